#!/usr/bin/env bash
# Installs what is missing, builds zorvek-bridge-host and runs it. Arguments go to the host
# (try --help). Type console commands such as ZorvekMCPBridge.Status; Ctrl-C or quit stops it.
source "$(dirname "${BASH_SOURCE[0]}")/Common.sh"

zorvek_install_missing_packages
zorvek_configure -DZORVEK_BUILD_TESTS=OFF -DZORVEK_BUILD_BENCHMARKS=OFF
echo "== Building zorvek-bridge-host"
cmake --build "$ZORVEK_BUILD_DIR" --target zorvek-bridge-host -j "$ZORVEK_JOBS"
echo "== Running zorvek-bridge-host (MCP endpoint on http://127.0.0.1:8765/mcp)"
exec "$ZORVEK_BUILD_DIR/Host/zorvek-bridge-host" "$@"
