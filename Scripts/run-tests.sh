#!/usr/bin/env bash
# Installs what is missing, builds everything with warnings as errors (the host, the tests,
# the benchmarks and the engine checks of the plug-in's sources) and runs every test.
source "$(dirname "${BASH_SOURCE[0]}")/Common.sh"

zorvek_install_missing_packages
zorvek_install_node_if_missing
zorvek_configure -DZORVEK_BUILD_TESTS=ON -DZORVEK_BUILD_BENCHMARKS=ON
echo "== Building"
cmake --build "$ZORVEK_BUILD_DIR" -j "$ZORVEK_JOBS"
echo "== Engine checks: every Source/ file alone and all of them as one unity unit, against the engine's declarations"
cmake --build "$ZORVEK_BUILD_DIR" --target zorvek-engine-syntax-check zorvek-unity-check
echo "== Running the tests"
cd "$ZORVEK_BUILD_DIR"
ctest --output-on-failure --timeout 600 -j "$ZORVEK_JOBS"
