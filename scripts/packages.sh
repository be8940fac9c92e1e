# Debian packages that a script needs, for ./check and ./demo to source.
#
#     need_packages <group>...     groups: build, clang, tidy, windows, coverage, bench
#
# What is missing is installed with apt-get where this user may (root, or sudo without a password); elsewhere the one
# line that installs it is printed and the script ends.

# package and what shows that it is there: a command, or a header that the compiler finds.
packages_of() {
    case $1 in
        build) echo "g++:g++ cmake:cmake ninja-build:ninja pkg-config:pkg-config
                     libgtest-dev:gtest/gtest.h libcli11-dev:CLI/CLI.hpp python3:python3" ;;
        clang) echo "clang:clang++" ;;
        tidy) echo "clang-tidy:clang-tidy clang-format:clang-format" ;;
        windows) echo "g++-mingw-w64-x86-64-posix:x86_64-w64-mingw32-g++-posix
                     googletest:/usr/src/googletest/googletest/include/gtest/gtest.h" ;;
        coverage) echo "gcovr:gcovr" ;;
        bench) echo "libbenchmark-dev:benchmark/benchmark.h libpugixml-dev:pugixml.hpp libsqlite3-dev:sqlite3.h
                     libmsgpack-cxx-dev:msgpack.hpp libxml2-dev:libxml2/libxml/parser.h libgumbo-dev:gumbo.h
                     zlib1g-dev:zlib.h liblz4-dev:lz4.h
                     qtbase5-dev:/usr/share/doc/qtbase5-dev" ;;
    esac
}

is_there() {
    case $1 in
        */* | *.h | *.hpp) printf '#if !__has_include(<%s>)\n#error\n#endif\n' "$1" |
            g++ -fsyntax-only -x c++ - >/dev/null 2>&1 ;;
        *) command -v "$1" >/dev/null 2>&1 ;;
    esac
}

need_packages() {
    local group entry missing="" prefix="" log
    for group in "$@"; do
        for entry in $(packages_of "$group"); do
            is_there "${entry#*:}" || missing="$missing ${entry%%:*}"
        done
    done
    [ -n "$missing" ] || return 0

    log=$(mktemp)
    if command -v apt-get >/dev/null 2>&1; then
        if [ "$(id -u)" != 0 ]; then
            prefix="sudo -n"
        fi
        if $prefix true >/dev/null 2>&1; then
            echo "installing:$missing"
            export DEBIAN_FRONTEND=noninteractive
            if { $prefix apt-get install -y --no-install-recommends $missing ||
                { $prefix apt-get update && $prefix apt-get install -y --no-install-recommends $missing; }; } \
                >"$log" 2>&1 </dev/null; then
                rm -f "$log"
                return 0
            fi
            tail -n 5 "$log"
        fi
    fi
    rm -f "$log"
    echo "These packages are missing. Install them and start again:"
    echo "    apt-get install -y --no-install-recommends$missing"
    exit 3
}
