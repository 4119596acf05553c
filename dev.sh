#!/usr/bin/env bash
# Sets up a Debian machine for this project, builds it, and runs what is asked.
#   ./dev.sh run     build everything and run the main job (see README.md)
#   ./dev.sh test    build everything and run all tests through ctest
#   ./dev.sh bench   build everything and run the benchmarks
#   ./dev.sh build   only build
# Idempotent: packages are installed only when missing, the build is incremental.
set -euo pipefail

here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
cd "$here"
build_dir="${BUILD_DIR:-$here/build}"

packages=(g++ cmake ninja-build ccache pkgconf qt6-base-dev qt6-5compat-dev libspdlog-dev
          libmosquitto-dev mosquitto mosquitto-clients openssl)

ensure_packages() {
    local missing=() p
    for p in "${packages[@]}"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    echo "dev.sh: installing ${missing[*]}" >&2
    $sudo apt-get update -q
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
}

configure() {
    if [ ! -f "$build_dir/build.ninja" ]; then
        cmake -S "$here" -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
    fi
}

build() {
    ensure_packages
    configure
    cmake --build "$build_dir"
}

case "${1:-help}" in
    build)
        build ;;
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
        ctest --test-dir "$build_dir" --output-on-failure -j "$(nproc)" ;;
    bench)
        build
        for b in "$build_dir"/bench/bench_*; do
            if [ -f "$b" ] && [ -x "$b" ]; then "$b"; fi
        done ;;
    *)
        sed -n '2,8p' "$0" | sed 's/^# \{0,1\}//'
        exit 2 ;;
esac
