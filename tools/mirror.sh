# Where packages of other Debian releases come from: TESSALINE_MIRROR, by default the first of the
# machine's own apt sources that has this machine's release. To be sourced; sets $mirror.
mirror=${TESSALINE_MIRROR:-$(
    release=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
    apt-get indextargets --format '$(RELEASE) $(REPO_URI)' 'Created-By: Packages' |
        awk -v name="$release" '$1 == name || $1 == "stable" { print $2; exit }')}
if [ -z "$mirror" ]; then
    echo "$0: no mirror in the machine's apt sources; set TESSALINE_MIRROR to one." >&2
    exit 1
fi
