# Shared by the two developer commands: installs what is missing (Debian packages) and
# configures the host build.
set -euo pipefail

ZORVEK_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
ZORVEK_BUILD_DIR="${ZORVEK_BUILD_DIR:-$ZORVEK_ROOT/build}"
ZORVEK_JOBS="${ZORVEK_JOBS:-$(nproc)}"

zorvek_install_missing_packages() {
	local Packages=(cmake make g++ pkg-config libcpp-httplib-dev libgtest-dev libgmock-dev libbenchmark-dev "$@")
	local Missing=()
	for Package in "${Packages[@]}"; do
		if ! dpkg-query -W -f='${Status}' "$Package" 2>/dev/null | grep -q "install ok installed"; then
			Missing+=("$Package")
		fi
	done
	if [ "${#Missing[@]}" -gt 0 ]; then
		echo "== Installing missing packages: ${Missing[*]}"
		local Sudo=""
		if [ "$(id -u)" -ne 0 ]; then
			Sudo="sudo"
		fi
		$Sudo apt-get update -qq
		DEBIAN_FRONTEND=noninteractive $Sudo apt-get install -y -qq "${Missing[@]}"
	fi
}

zorvek_install_node_if_missing() {
	if ! command -v node >/dev/null 2>&1 || ! command -v npm >/dev/null 2>&1; then
		zorvek_install_missing_packages nodejs npm
	fi
}

zorvek_configure() {
	echo "== Configuring the host build in $ZORVEK_BUILD_DIR"
	cmake -S "$ZORVEK_ROOT" -B "$ZORVEK_BUILD_DIR" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZORVEK_WARNINGS_AS_ERRORS=ON "$@" >/dev/null
}
