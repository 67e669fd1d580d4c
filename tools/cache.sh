# Where what takes long to make is kept, one folder a machine: the Qt for Windows, wine's Windows, the
# next Debian. To be sourced; sets $cache.
cache=${TESSALINE_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/tessaline}
