# What the scripts share; read by each of them with `.`, never run.
# shellcheck shell=bash

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
presets="release debug sanitize tsan fuzz"

say() {
    printf '[%s] %s\n' "${0##*/}" "$*"
}

fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# The comment at a script's head is its help.
usage() {
    [ $# -eq 0 ] || printf '%s: %s\n\n' "${0##*/}" "$*" >&2
    sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0" >&2
    exit 2
}

# The sources of the project, one a line, from its top.
sources() {
    (cd "$top" && find . \( -name build -o -name .git \) -prune -o -type f \
        \( -name '*.cpp' -o -name '*.h' \) -printf '%P\n' | sort)
}

# Sets `preset` to the argument, release if there is none.
choose_preset() {
    preset=${1:-release}
    case " $presets " in
        *" $preset "*) ;;
        *) usage "there is no preset \"$preset\"; the presets are: $presets" ;;
    esac
}

# Prints the numbers of the processes whose environment holds NAME=VALUE, but for this one and those
# above it.
marked_processes() {
    local above=" " pid=$BASHPID
    while [ "${pid:-0}" -gt 1 ]; do
        above+="$pid "
        pid=$(sed -n 's/^PPid:[[:space:]]*//p' "/proc/$pid/status" 2>/dev/null)
    done
    # Listed first, so that what does the looking, and carries the mark as well, isn't among them.
    local environments=(/proc/[0-9]*/environ)
    while IFS=/ read -r _ _ pid _; do
        [[ $above == *" $pid "* ]] || printf '%s\n' "$pid"
    done < <(grep -lszFx -- "$1" "${environments[@]}")
}

# build PRESET TARGET [cmake's settings...]: configures and builds. JUNTORA_WERROR makes warnings
# errors, and the build folder stays so; JUNTORA_JOBS bounds the compilers that run at a time.
build() {
    local preset=$1 target=$2 log="$top/build/$1.log"
    shift 2
    [ -z "${JUNTORA_WERROR:-}" ] || set -- "$@" -DJUNTORA_WERROR=ON
    mkdir -p "$top/build"
    # One at a time in a build folder; the lock is not handed on to what runs under it.
    (
        cd "$top"
        exec 9>"build/$preset.lock"
        flock -n 9 || { say "waiting for another build in build/$preset"; flock 9; }
        say "configuring build/$preset"
        if ! cmake --preset "$preset" "$@" >"$log" 2>&1 9>&-; then
            cat "$log" >&2
            fail "build/$preset could not be configured (the reason stands above)"
        fi
        say "building build/$preset ($target)"
        cmake --build --preset "$preset" --target "$target" \
            --parallel "${JUNTORA_JOBS:-$(nproc)}" -- -k "${ninja_keeps_going:-1}" \
            9>&- </dev/null ||
            fail "build/$preset could not be built (the reason stands above)"
    ) || exit 1
}

# Gives this process and what it starts folders of their own for everything that the programs keep,
# marks it all with JUNTORA_RUN, and sees to it that nothing of it outlives this script, whatever
# ends it. An argument names the folder to make them in.
isolate() {
    base=$(mktemp -d "${1:-${TMPDIR:-/tmp}}/juntora.XXXXXX")
    trap clean_up EXIT
    trap 'exit 129' HUP
    trap 'exit 130' INT
    trap 'exit 143' TERM
    mkdir -m 700 "$base"/{tmp,run,home}
    export JUNTORA_RUN=$base JUNTORA_SCREEN=none
    export TMPDIR=$base/tmp XDG_RUNTIME_DIR=$base/run HOME=$base/home
    export JUNTORA_REGISTRY=$base/registry JUNTORA_SITE=$base/site
    unset XDG_CONFIG_HOME XDG_DATA_HOME JUNTORA_DESKTOP JUNTORA_ROOT PARENT
    unset BINROOTDIR VOLTARAINIPATH
    unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS
}

clean_up() {
    local left
    # One that was just being started may come up after its starter has been ended.
    for _ in {1..20}; do
        left=$(marked_processes "JUNTORA_RUN=$base")
        [ -n "$left" ] || break
        # Numbers, one a word.
        # shellcheck disable=SC2086
        kill -KILL $left 2>/dev/null || true
    done
    rm -rf "$base"
}
