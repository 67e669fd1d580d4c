# Sets $mirror, the source of packages of other Debian releases: TESSALINE_MIRROR, or the first of the
# machine's apt sources with the machine's release. Source this file.
mirror=${TESSALINE_MIRROR:-$(
    release=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
    apt-get indextargets --format '$(RELEASE) $(REPO_URI)' 'Created-By: Packages' |
        awk -v name="$release" '$1 == name || $1 == "stable" { print $2; exit }')}
if [ -z "$mirror" ]; then
    echo "$0: the machine's apt sources have no mirror; set TESSALINE_MIRROR to the URL of one." >&2
    exit 1
fi
