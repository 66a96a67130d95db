#!/usr/bin/env bash
# Builds the Debian package from this tree and looks it over without installing it.
#   scripts/package.sh     leaves build/package/orbilens-player_<version>_<architecture>.deb
# scripts/check-package.sh installs it into a clean system and runs it there.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh package
log=$(mktemp)
trap 'rm -f "$log"' EXIT
quietly() { "$@" >"$log" 2>&1 || { cat "$log"; exit 1; }; }

quietly cmake --preset package
cmake --build build/package -j "$(nproc)" --
rm -f build/package/orbilens-player*.deb
# Packages are made readable by all, whoever builds them.
(umask 022 && cd build/package && quietly cpack -G DEB)
package=$(ls "$PWD"/build/package/orbilens-player_*.deb)

contents=$(mktemp -d)
trap 'rm -rf "$log" "$contents"' EXIT
dpkg-deb -x "$package" "$contents"
appstreamcli validate --no-net "$contents"/usr/share/metainfo/*.metainfo.xml
desktop-file-validate "$contents"/usr/share/applications/*.desktop
xmllint --noout "$contents"/usr/share/mime/packages/*.xml
true >"$log"
for page in "$contents"/usr/share/man/man1/*.gz; do
  man --warnings --local-file "$page" 2>>"$log" >/dev/null
done
[ ! -s "$log" ] || { cat "$log"; exit 1; }
if grep -rlF "$PWD" "$contents" | grep .; then
  echo "These files of the package name the folder that it was built in."
  exit 1
fi

dpkg-deb -I "$package"
echo "Package: $package"
