#!/usr/bin/env bash
# Prints the folder of the Qt for the preset windows; builds it once for each machine. Qt Core, Gui and
# Test are cross-built from Debian's source package of the installed version.
#   tools/windows-qt.sh [--if-made]     with --if-made, fails instead of building
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/cache.sh

version=6.4.2
options=(
    -DCMAKE_BUILD_TYPE=Release -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF -DINPUT_opengl=no)
for feature in sql network widgets xml concurrent printsupport dbus icu zstd vulkan direct2d pdf \
    jpeg textodfwriter textmarkdownreader textmarkdownwriter pkg_config; do
    options+=("-DFEATURE_$feature=OFF")
done
for bundled in zlib pcre2 doubleconversion png freetype harfbuzz; do
    options+=("-DFEATURE_system_$bundled=OFF")
done

# Other options or another compiler need another build, so the folder's name has a hash of them.
key=$( (printf '%s\n' "${options[@]}"; cat cmake/mingw-w64.cmake
        x86_64-w64-mingw32-g++-posix --version) | sha256sum | cut -c1-8)
folder=$cache/qt-$version-windows-$key
if [ -f "$folder/made" ]; then
    echo "$folder"
    exit 0
fi
[ "${1:-}" != --if-made ] || exit 1

work=$cache/making-qt
log=$work/log
rm -rf "$work" "$folder"
mkdir -p "$work"
quietly() { "$@" >>"$log" 2>&1 || { tail -n 40 "$log" >&2; exit 1; }; }

# Separate apt folders keep the machine's package lists unchanged.
mkdir -p "$work/lists/partial" "$work/archives/partial"
source tools/mirror.sh
keyring=/usr/share/keyrings/debian-archive-keyring.gpg
echo "deb-src [signed-by=$keyring] $mirror bookworm main" >"$work/sources.list"
apt=(apt-get -o "Dir::Etc::SourceList=$work/sources.list" -o Dir::Etc::SourceParts=-
    -o "Dir::State::Lists=$work/lists" -o "Dir::Cache=$work" -o APT::Sandbox::User=root)
echo "Downloading the source package of Qt $version ..." >&2
quietly "${apt[@]}" update
(cd "$work" && quietly "${apt[@]}" source --only-source qt6-base)
source=$(echo "$work"/qt6-base-$version*/)
[ -d "$source" ] || {
    echo "$0: Debian's source package does not have Qt $version; use a mirror of Debian 12" >&2
    exit 1
}
# The tests need no plug-in of Qt.
sed -i '/^add_subdirectory(plugins)/d' "$source/src/CMakeLists.txt"

echo "Building Qt $version for Windows, ten minutes or more on 2 cores ..." >&2
quietly cmake -G Ninja -S "$source" -B "$work/build" -DCMAKE_INSTALL_PREFIX="$folder" \
    -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/mingw-w64.cmake" -DQT_HOST_PATH=/usr \
    -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/cmake" \
    "${options[@]}"
quietly cmake --build "$work/build"
quietly cmake --install "$work/build"
touch "$folder/made"
rm -rf "$work"
echo "$folder"
