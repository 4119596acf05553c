#!/usr/bin/env bash
# Makes the Debian packages from the built tree (cpack only, nothing is built
# again) and looks at them as an installation would: their control fields,
# which package holds which file, the unit and the configuration, the packaged
# dbhost started with the unit's command line on the packaged libraries, and
# the example consumer built against the packaged development files.
#   package_check.sh <build folder> <source folder>
set -euo pipefail
build_dir="$1"
source_dir="$(cd "$2" && pwd)"
work="$(mktemp -d)"
host_pid=""
cleanup() {
    if [ -n "$host_pid" ]; then kill -KILL "$host_pid" 2>/dev/null || true; fi
    rm -rf "$work"
}
trap cleanup EXIT

failures=0
fail() {
    echo "FAIL: $*" >&2
    failures=$((failures + 1))
}

start=$SECONDS
if ! cpack --config "$build_dir/CPackConfig.cmake" -B "$work/out" > "$work/cpack.log" 2>&1; then
    cat "$work/cpack.log" >&2
    exit 1
fi
echo "cpack: $((SECONDS - start)) s"

packages=(libdatabase4 libdatabase-dev dbhost)
root="$work/root" # every package unpacked together, as installed
mkdir -p "$root"
declare -A deb
for p in "${packages[@]}"; do
    found=("$work/out/${p}"_*.deb)
    if [ "${#found[@]}" -ne 1 ] || [ ! -f "${found[0]}" ]; then
        fail "expected one ${p}_*.deb, found: ${found[*]}"
        continue
    fi
    deb[$p]="${found[0]}"
    mkdir -p "$work/pkg/$p" "$work/control/$p"
    dpkg-deb -x "${deb[$p]}" "$work/pkg/$p"
    dpkg-deb -x "${deb[$p]}" "$root"
    dpkg-deb -e "${deb[$p]}" "$work/control/$p"
done
[ "$failures" -eq 0 ] || exit 1

field() { dpkg-deb -f "${deb[$1]}" "$2"; }
version="$(field libdatabase4 Version)"
multiarch="$(dpkg-architecture -qDEB_HOST_MULTIARCH)"
libdir="usr/lib/$multiarch"

# -- Control fields: <package> <field> <text it must hold>. Depends between our
# packages pin the same version; the rest comes from dpkg-shlibdeps.
while IFS='|' read -r p name text; do
    [ -n "$p" ] || continue
    value="$(field "$p" "$name")"
    [[ "$value" == *"$text"* ]] || fail "$p: $name is '$value', lacks '$text'"
done <<EOF
libdatabase4|Package|libdatabase4
libdatabase4|Depends|libqt6core6
libdatabase4|Depends|libqt6core5compat6
libdatabase4|Depends|libspdlog
libdatabase-dev|Package|libdatabase-dev
libdatabase-dev|Depends|libdatabase4 (= $version)
libdatabase-dev|Depends|qt6-base-dev
libdatabase-dev|Depends|libspdlog-dev
dbhost|Package|dbhost
dbhost|Version|$version
dbhost|Depends|libdatabase4 (= $version)
dbhost|Depends|libmosquitto1
EOF

[ "$(cat "$work/control/dbhost/conffiles" 2>/dev/null)" = /etc/dbhost/dbhost.conf ] ||
    fail "dbhost: conffiles should list /etc/dbhost/dbhost.conf alone"
for script in postinst prerm postrm; do
    f="$work/control/dbhost/$script"
    if [ ! -x "$f" ]; then
        fail "dbhost: no executable $script"
    elif ! sh -n "$f"; then
        fail "dbhost: $script is no valid shell script"
    fi
done
# The maintainer scripts with every outside command replaced by one that notes
# its call: <script and arguments>|<getent status>|<systemd-sysusers there>|<calls>.
# systemctl is left out of the comparison: whether it is called depends on
# systemd running on this machine.
stubs="$work/stubs"
mkdir -p "$stubs"
for tool in getent systemd-sysusers adduser systemctl rm; do
    # shellcheck disable=SC2016 # $* and the status belong to the stub
    printf '#!/bin/sh\necho "%s $*" >> "%s"\nexit ${STUB_STATUS:-0}\n' "$tool" "$work/calls" > "$stubs/$tool"
    chmod +x "$stubs/$tool"
done
sed -i 's/STUB_STATUS/GETENT_STATUS/' "$stubs/getent"
while IFS='|' read -r call getent_status sysusers calls; do
    [ -n "$call" ] || continue
    if [ "$sysusers" = yes ]; then chmod +x "$stubs/systemd-sysusers"; else chmod -x "$stubs/systemd-sysusers"; fi
    : > "$work/calls"
    read -r -a words <<< "$call"
    if ! GETENT_STATUS="$getent_status" PATH="$stubs" /bin/sh "$work/control/dbhost/${words[0]}" "${words[@]:1}"; then
        fail "dbhost: $call failed"
    fi
    made="$({ grep -v '^systemctl' "$work/calls" || true; } | paste -sd ';' -)"
    [ "$made" = "$calls" ] || fail "dbhost: $call (user there: $getent_status, sysusers: $sysusers) called '$made', not '$calls'"
done <<'EOF'
postinst configure|2|yes|getent passwd dbhost;systemd-sysusers dbhost.conf
postinst configure|2|no|getent passwd dbhost;adduser --system --group --quiet --home /var/lib/dbhost --no-create-home dbhost
postinst configure 4.0.0-1|0|yes|getent passwd dbhost
postrm remove|0|yes|
postrm purge|0|yes|rm -rf /var/lib/dbhost
EOF

# Packages built against the library depend on it through its shlibs file.
grep -q "^libdatabase 4 libdatabase4 " "$work/control/libdatabase4/shlibs" 2>/dev/null ||
    fail "libdatabase4: no shlibs entry for libdatabase.so.4"

# -- Files: <package> <path> <kind>, kind being file, exec, or link:<target>.
expected="$work/expected"
{
    for lib in libdatabase libdatabase-qjsonserializer libdatabase-classlogs; do
        echo "libdatabase4 $libdir/$lib.so.4.0.0 file"
        echo "libdatabase4 $libdir/$lib.so.4 link:$lib.so.4.0.0"
        echo "libdatabase-dev $libdir/$lib.so link:$lib.so.4"
    done
    cat <<EOF
libdatabase-dev usr/include/database4/database/database_t.h file
libdatabase-dev usr/include/database4/database/database_export.h file
libdatabase-dev usr/include/database4/database/persistent/persistent_t.h file
libdatabase-dev usr/include/database4/platform/logs/classlogs.h file
libdatabase-dev usr/include/database4/platform/qjsonserializer/qjsonserializer_export.h file
libdatabase-dev $libdir/cmake/database/databaseConfig.cmake file
libdatabase-dev $libdir/cmake/database/databaseConfigVersion.cmake file
libdatabase-dev $libdir/cmake/database/databaseTargets.cmake file
libdatabase-dev $libdir/pkgconfig/database.pc file
dbhost usr/bin/dbhost exec
dbhost usr/lib/systemd/system/dbhost.service file
dbhost usr/lib/sysusers.d/dbhost.conf file
dbhost etc/dbhost/dbhost.conf file
EOF
} > "$expected"
while read -r p path kind; do
    f="$work/pkg/$p/$path"
    case "$kind" in
        file) [ -f "$f" ] && [ ! -L "$f" ] || fail "$p: no file /$path" ;;
        exec) [ -f "$f" ] && [ -x "$f" ] || fail "$p: no executable /$path" ;;
        link:*) [ -L "$f" ] && [ "$(readlink "$f")" = "${kind#link:}" ] ||
            fail "$p: /$path should be a link to ${kind#link:}" ;;
    esac
done < "$expected"

# dpkg refuses two packages that hold the same file.
for p in "${packages[@]}"; do
    (cd "$work/pkg/$p" && find . ! -type d)
done | sort | uniq -d > "$work/shared"
[ ! -s "$work/shared" ] || fail "files in more than one package: $(tr '\n' ' ' < "$work/shared")"

for lib in libdatabase libdatabase-qjsonserializer libdatabase-classlogs; do
    soname="$(readelf -d "$root/$libdir/$lib.so.4.0.0" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')"
    [ "$soname" = "$lib.so.4" ] || fail "$lib: SONAME is '$soname', not $lib.so.4"
done
# A run path into the build folder would load the build's libraries, not ours.
if readelf -d "$root/usr/bin/dbhost" | grep -Eq 'RPATH|RUNPATH'; then
    fail "dbhost: the packaged binary keeps a run path"
fi
grep -qx 'prefix=/usr' "$root/$libdir/pkgconfig/database.pc" ||
    fail "database.pc: prefix is not /usr"
# Log lines name sources by their path in the tree, not the build machine's.
leaks="$(grep -rlF "$source_dir/" "$root/usr/bin" "$root/$libdir" || true)"
[ -z "$leaks" ] || fail "the build machine's source folder $source_dir is named in: $leaks"

# -- The unit and the system user.
unit="$root/usr/lib/systemd/system/dbhost.service"
conf="$root/etc/dbhost/dbhost.conf"
for key in 'User=dbhost' 'StateDirectory=dbhost' 'EnvironmentFile=/etc/dbhost/dbhost.conf' \
    'ProtectSystem=strict' 'ProtectHome=yes' 'PrivateTmp=yes' 'NoNewPrivileges=yes' 'Restart=on-failure'; do
    grep -qx "$key" "$unit" || fail "dbhost.service: no line $key"
done
for key in DBHOST_BROKER DBHOST_ROLE DBHOST_OPTIONS; do
    grep -q "^$key=" "$conf" || fail "dbhost.conf: no $key"
done
if command -v systemd-analyze > /dev/null; then
    # verify wants the command to exist: point it at the unpacked one.
    mkdir -p "$work/unit"
    sed "s|/usr/bin/dbhost|$root/usr/bin/dbhost|" "$unit" > "$work/unit/dbhost.service"
    if ! systemd-analyze verify "$work/unit/dbhost.service" > "$work/verify.log" 2>&1; then
        fail "systemd-analyze verify: $(cat "$work/verify.log")"
    fi
    # Mistakes in a unit are mostly warnings ("Unknown key", "Failed to parse").
    # An older libseccomp not knowing a system call of the filter is the
    # machine's business, not the unit's.
    if grep 'dbhost\.service' "$work/verify.log" | grep -v 'Failed to parse system call' | grep -q .; then
        fail "systemd-analyze verify: $(cat "$work/verify.log")"
    fi
else
    echo "systemd-analyze not installed: the unit is not verified"
fi
if command -v systemd-sysusers > /dev/null; then
    mkdir -p "$work/sysroot/etc"
    systemd-sysusers --root="$work/sysroot" "$root/usr/lib/sysusers.d/dbhost.conf" 2> "$work/sysusers.log" ||
        fail "systemd-sysusers: $(cat "$work/sysusers.log")"
    grep -q '^dbhost:x:[0-9]*:[0-9]*:.*:/var/lib/dbhost:' "$work/sysroot/etc/passwd" 2> /dev/null ||
        fail "sysusers.d/dbhost.conf makes no user dbhost with home /var/lib/dbhost"
fi

# -- The packaged dbhost on the packaged libraries.
export LD_LIBRARY_PATH="$root/$libdir"
printed="$("$root/usr/bin/dbhost" --version)"
[ "$printed" = "dbhost ${version%-*}" ] || fail "dbhost --version says '$printed', the package is $version"

# The unit's command line as systemd would run it: the defaults of the unit,
# then the configuration file, %S the state folder. The broker is a closed port
# of this machine (the host waits for it), not whatever broker runs here.
exec_line="$(sed -n 's/^ExecStart=//p' "$unit")"
exec_line="${exec_line//%S/$work/state}"
exec_line="${exec_line//\/usr\/bin\/dbhost/$root/usr/bin/dbhost}"
args=()
# shellcheck disable=SC2016,SC2034
args_script="$(
    set -a
    eval "$(sed -n 's/^Environment=//p' "$unit")"
    # shellcheck source=/dev/null
    . "$conf"
    DBHOST_BROKER=127.0.0.1:9
    eval "printf '%q ' $exec_line"
)"
eval "args=($args_script)"
echo "the unit runs: ${args[*]}"
mkdir -p "$work/state"
"${args[@]}" < /dev/null > "$work/host.out" 2> "$work/host.err" &
host_pid=$!
for _ in $(seq 1 300); do
    [ -f "$work/state/dbhost/persistent.json" ] || ! kill -0 "$host_pid" 2> /dev/null && break
    sleep 0.1
done
sleep 0.5 # an end of standard input must not end the service
if ! kill -0 "$host_pid" 2> /dev/null; then
    wait "$host_pid" && status=0 || status=$?
    host_pid=""
    fail "dbhost with the unit's command line ended at once (status $status): $(cat "$work/host.err")"
else
    [ -f "$work/state/dbhost/persistent.json" ] || fail "dbhost saved no persistent.json in its state folder"
    kill -TERM "$host_pid"
    wait "$host_pid" && status=0 || status=$?
    host_pid=""
    [ "$status" -eq 0 ] || fail "dbhost ended with status $status on SIGTERM: $(cat "$work/host.err")"
fi

# -- The development files as a program finds them.
if cmake -S "$source_dir/examples/consumer" -B "$work/consumer" -G Ninja \
    -DCMAKE_PREFIX_PATH="$root/usr" > "$work/consumer.log" 2>&1 &&
    cmake --build "$work/consumer" >> "$work/consumer.log" 2>&1; then
    hash="$("$work/consumer/consumer")"
    [[ "$hash" =~ ^[0-9a-f]{40}$ ]] || fail "the consumer printed '$hash', no hash"
else
    fail "the consumer does not build against the packages: $(tail -n 30 "$work/consumer.log")"
fi

echo "package check: $((SECONDS - start)) s, $failures failure(s)"
[ "$failures" -eq 0 ]
