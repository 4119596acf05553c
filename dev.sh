#!/usr/bin/env bash
# Sets up a Debian machine for this project, builds it, and runs what is asked.
#   ./dev.sh run     build everything and run the main job (see README.md)
#   ./dev.sh test    build everything and run all tests through ctest, then the
#                    sanitizer build's tests and a few seconds of each fuzz target
#                    (DATABASE_CI_SANITIZE=0 leaves the sanitizer step out)
#   ./dev.sh bench   build everything and run the benchmarks (installs Node.js, the
#                    pinned jsonl-db for the live road's peer and the pinned states
#                    server for the cross-process road's)
#   ./dev.sh build   only build
#   ./dev.sh package build and make the Debian packages (build/packages/*.deb)
#   ./dev.sh sanitize  build with ASan+UBSan (clang) in build-san and run all tests under it
#   ./dev.sh fuzz [s]  build the fuzz targets and run each for s seconds (60);
#                    FUZZ_RUNS=n runs n inputs each instead, FUZZ_ONLY="names" some targets
#   ./dev.sh tsan    build the consistency and migration tests with ThreadSanitizer
#                    in build-tsan and run them
# Idempotent: packages are installed only when missing, the build is incremental.
set -euo pipefail

here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
cd "$here"
build_dir="${BUILD_DIR:-$here/build}"

san_dir="${SAN_BUILD_DIR:-$here/build-san}"
tsan_dir="${TSAN_BUILD_DIR:-$here/build-tsan}"
tsan_tests=(tst_consistency tst_ps_consistency tst_rt_consistency tst_migration tst_migration_scripts)

packages=(g++ cmake ninja-build ccache pkgconf qt6-base-dev qt6-5compat-dev libspdlog-dev
          libmosquitto-dev mosquitto mosquitto-clients openssl)
# cpack's Debian packages: dpkg-shlibdeps and dpkg-architecture, and file, which
# cpack uses to find the binaries.
packages+=(dpkg-dev file)
# The host's inspector (dbhost --http): Qt's HTTP and WebSocket servers, and
# the headless browser with its driver that its test drives.
packages+=(qt6-httpserver-dev qt6-websockets-dev chromium chromium-driver python3-selenium)
# The sanitizer build: clang, its runtimes with libFuzzer, and llvm-symbolizer for readable reports.
san_packages=(clang libclang-rt-dev llvm)

ensure_packages() {
    local missing=() p
    for p in "$@"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    echo "dev.sh: installing ${missing[*]}" >&2
    $sudo apt-get update -q
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
}

# The prefix /usr gives a plain `cmake --install` the packages' layout (the
# packages have it whatever the prefix); it wants --prefix (or DESTDIR) then.
configure() {
    if [ ! -f "$build_dir/build.ninja" ]; then
        cmake -S "$here" -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_INSTALL_PREFIX=/usr
    elif grep -qx 'CMAKE_INSTALL_PREFIX:PATH=/usr/local' "$build_dir/CMakeCache.txt"; then
        # A folder made before the packages existed, with CMake's default.
        cmake -DCMAKE_INSTALL_PREFIX=/usr "$build_dir" > /dev/null
    fi
}

build() {
    ensure_packages "${packages[@]}"
    configure
    cmake --build "$build_dir"
}

build_san() {
    ensure_packages "${packages[@]}" "${san_packages[@]}"
    if [ ! -f "$san_dir/build.ninja" ]; then
        CC=clang CXX=clang++ cmake -S "$here" -B "$san_dir" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
            -DDATABASE_SANITIZE=ON -DDATABASE_BUILD_BENCH=OFF
    fi
    cmake --build "$san_dir"
    # Every report ends the program with a failure; leaks are reports too.
    export ASAN_OPTIONS="detect_leaks=1:check_initialization_order=1:strict_init_order=1:abort_on_error=0"
    export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
    export ASAN_SYMBOLIZER_PATH="${ASAN_SYMBOLIZER_PATH:-$(command -v llvm-symbolizer || true)}"
}

# run_fuzz <seconds>: each target from its seeds, new finds kept in the build folder.
run_fuzz() {
    local seconds="$1" target name failed=0
    # No allocation stacks and a smaller quarantine let the targets run about
    # half as fast again; a finding is rerun from its saved input with the full
    # options. FUZZ_RUNS stops each target after that many inputs instead.
    local ASAN_OPTIONS="$ASAN_OPTIONS:malloc_context_size=0:quarantine_size_mb=32"
    local limit="-max_total_time=$seconds"
    [ -n "${FUZZ_RUNS:-}" ] && limit="-runs=$FUZZ_RUNS"
    for target in "$san_dir"/fuzz/fuzz_*; do
        [ -f "$target" ] && [ -x "$target" ] || continue
        name="$(basename "$target")"
        # FUZZ_ONLY="fuzz_a fuzz_b" runs just those.
        [ -z "${FUZZ_ONLY:-}" ] || [[ " $FUZZ_ONLY " == *" $name "* ]] || continue
        mkdir -p "$san_dir/fuzz/corpus/$name"
        echo "== $name for ${seconds}s" >&2
        # Entropic scheduling keeps a frequency per feature of every input: with
        # the tens of thousands of features a database input touches, that took
        # two thirds of the time.
        if ! "$target" $limit -entropic=0 -timeout=25 -rss_limit_mb=4096 -print_final_stats=1 \
            -dict="$here/fuzz/topics.dict" -artifact_prefix="$san_dir/fuzz/$name-" \
            "$san_dir/fuzz/corpus/$name" "$here/fuzz/corpus/$name" 2>"$san_dir/fuzz/$name.log"; then
            tail -n 60 "$san_dir/fuzz/$name.log" >&2
            failed=1
        fi
        grep -E '^stat::number_of_executed_units|^#[0-9]+ *DONE' "$san_dir/fuzz/$name.log" >&2 || true
    done
    return "$failed"
}

case "${1:-help}" in
    build)
        build ;;
    package)
        build
        out="$build_dir/packages"
        rm -f "$out"/*.deb
        cpack --config "$build_dir/CPackConfig.cmake" -B "$out" > "$build_dir/cpack.log" 2>&1 ||
            { cat "$build_dir/cpack.log" >&2; exit 1; }
        ls -1 "$out"/*.deb ;;
    run)
        build
        host="$build_dir/host/dbhost/dbhost"
        echo "== dbhost (offline role, data folder ./data) reads examples/demo.jsonl" >&2
        "$host" --data "$here/data" < "$here/examples/demo.jsonl"
        echo "== Saved in data/persistent.json: items" >&2
        "$host" --data "$here/data" --dump items
        for section in drivers elements schedulers; do
            echo "== Saved in data/persistent.json: $section" >&2
            "$host" --data "$here/data" --dump "$section"
        done
        echo "== Saved in data/realtime.json: items (the live value of light_hall)" >&2
        "$host" --data "$here/data" --dump realtime/items
        for section in drivers notify; do
            echo "== Saved in data/realtime.json: $section" >&2
            "$host" --data "$here/data" --dump "realtime/$section"
        done ;;
    test)
        build
        ctest --test-dir "$build_dir" --output-on-failure -j "$(nproc)"
        # The same tests under the sanitizers, with a few seconds of each fuzz
        # target (ctest label fuzz). DATABASE_CI_SANITIZE=0 leaves that step out.
        if [ "${DATABASE_CI_SANITIZE:-1}" = 1 ]; then
            start=$SECONDS
            build_san
            ctest --test-dir "$san_dir" --output-on-failure -j "$(nproc)"
            echo "dev.sh: sanitizer build, tests and fuzzing took $((SECONDS - start)) s" >&2
        fi ;;
    sanitize)
        build_san
        ctest --test-dir "$san_dir" --output-on-failure -j "$(nproc)" -LE fuzz ;;
    tsan)
        ensure_packages "${packages[@]}"
        if [ ! -f "$tsan_dir/build.ninja" ]; then
            cmake -S "$here" -B "$tsan_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
                -DDATABASE_SANITIZE_THREAD=ON -DDATABASE_BUILD_BENCH=OFF
        fi
        cmake --build "$tsan_dir" --target "${tsan_tests[@]}"
        for t in "${tsan_tests[@]}"; do "$tsan_dir/tests/$t"; done ;;
    fuzz)
        build_san
        run_fuzz "${2:-60}" ;;
    bench)
        build
        # The peer of the live road benchmark: jsonl-db under Node.js, as pinned in bench/peer.
        if ! command -v node >/dev/null || ! command -v npm >/dev/null; then
            ensure_packages nodejs npm
        fi
        (cd "$here/bench/peer" && npm ci --no-audit --no-fund --loglevel=error)
        # The peer of the cross-process road: a states server and its clients, as pinned in bench/peer_states.
        (cd "$here/bench/peer_states" && npm ci --no-audit --no-fund --loglevel=error)
        failed=0
        for b in "$build_dir"/bench/bench_*; do
            # Only the executables: the build folder also holds bench_*_autogen folders.
            if [ -f "$b" ] && [ -x "$b" ]; then
                QTEST_FUNCTION_TIMEOUT=3600000 "$b" || failed=1
            fi
        done
        [ -f "$build_dir/bench/live_road.json" ] && echo "dev.sh: figures in $build_dir/bench/live_road.json" >&2
        exit "$failed" ;;
    *)
        sed -n '2,/^# Idempotent/p' "$0" | sed 's/^# \{0,1\}//'
        exit 2 ;;
esac
