# Sets $cache, the machine's folder for results that take long to make: Qt for Windows, wine's Windows,
# other Debian releases. Source this file.
cache=${TESSALINE_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/tessaline}
