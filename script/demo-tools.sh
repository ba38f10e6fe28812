# How script/demo drives its tools; read by it with `.`, never run. A tool is `juntoractl tool`
# behind two pipes, one command a line into it, one JSON object a line out of it.
# shellcheck shell=bash
# shellcheck disable=SC2034,SC2154

declare -A pid in out id name pending
steps=0
patience=10

step() {
    steps=$((steps + 1))
    printf '\n%2d. %s\n' "$steps" "$1"
}

told() {
    printf '      %s\n' "$1"
}

broken() {
    printf '\nThis step has not happened: %s.\n' "$1" >&2
    if [ -s "$errors" ]; then
        printf 'What the programs wrote to standard error:\n' >&2
        tail -n 20 "$errors" >&2
    fi
    exit 1
}

# Seconds since a reading of EPOCHREALTIME, with three places.
since() {
    local passed=$((${EPOCHREALTIME/[.,]/} - ${1/[.,]/}))
    printf '%d.%03d' $((passed / 1000000)) $((passed / 1000 % 1000))
}

# start_program KEY PROGRAM [ARGUMENT...]: with pipes at its input and output.
start_program() {
    local key=$1 program=$2 reading writing
    shift 2
    mkfifo "$base/$key.in" "$base/$key.out"
    "$bin/$program" "$@" <"$base/$key.in" >"$base/$key.out" 2>>"$errors" &
    pid[$key]=$!
    exec {writing}>"$base/$key.in" {reading}<"$base/$key.out"
    in[$key]=$writing
    out[$key]=$reading
    pending[$key]=
    # Its end is told by what it says and does, not by the shell.
    disown "${pid[$key]}"
}

# start_tool KEY NAME: waits for the sign-on and keeps id and name.
start_tool() {
    start_program "$1" juntoractl tool "$2"
    line_with "$1" '"event": ?"(signed-on|refused)"'
    [[ $line == *signed-on* ]] || broken "the hub refused $2: $line"
    id[$1]=$(field id)
    name[$1]=$(field name)
}

# field NAME: its value in the JSON object `line`, with what is escaped in it as it was meant.
field() {
    local pattern="\"$1\": ?(\"(([^\"\\\\]|\\\\.)*)\"|-?[0-9]+)" value
    [[ $line =~ $pattern ]] || return 0
    value=${BASH_REMATCH[1]}
    if [[ $value == \"* ]]; then
        value=${BASH_REMATCH[2]//\\\"/\"}
        value=${value//\\\\/\\}
    fi
    printf '%s' "$value"
}

# line_with KEY PATTERN: the first line from the tool that matches, past ones first, into `line`.
# The others wait for whoever asks for them.
line_with() {
    local key=$1 pattern=$2 kept="" rest=${pending[$1]}
    local end=$((${EPOCHREALTIME/[.,]/} + patience * 1000000)) left
    while [ -n "$rest" ]; do
        line=${rest%%$'\n'*}
        rest=${rest#*$'\n'}
        if [[ $line =~ $pattern ]]; then
            pending[$key]=$kept$rest
            return
        fi
        kept+=$line$'\n'
    done
    while left=$((end - ${EPOCHREALTIME/[.,]/})) && [ "$left" -gt 0 ] &&
        read -r -t "$((left / 1000000)).$(printf '%06d' $((left % 1000000)))" -u "${out[$key]}" line; do
        if [[ $line =~ $pattern ]]; then
            pending[$key]=$kept
            return
        fi
        kept+=$line$'\n'
    done
    broken "within $patience s there came no line with $pattern; these came:${kept:+ }${kept:- none}"
}

# ask KEY COMMAND: what it yields is in `line`, its result in `result`.
ask() {
    printf '%s\n' "$2" >&"${in[$1]}"
    line_with "$1" '"event": ?"(result|error)"'
    [[ $line == *'"result"'* ]] || broken "${2%% *} was not understood: $line"
    result=$(field result)
}

# watches KEY COMMAND ACCOUNT
watches() {
    ask "$1" "$2"
    [ "$result" = 1 ] || broken "the hub refused \"$2\""
    told "$3"
}

# record KEY OPCODE SENDER TEXT: waits for just this record; its text is in `record`.
record() {
    line_with "$1" "\"event\": ?\"record\".*"
    record=$(field text)
    [ "$(field opcode)" = "$2" ] || broken "a record of opcode $2 was meant, this came: $line"
    [ "$(field sender)" = "${id[$3]:-0}" ] || broken "it should come from ${id[$3]:-0}: $line"
    [ "$record" = "$4" ] || broken "the text should be \"$4\": $line"
}

# until_found KEY NAME: the hub knows the name; the window is in `found`.
until_found() {
    local end=$((${EPOCHREALTIME/[.,]/} + patience * 1000000))
    while [ "${EPOCHREALTIME/[.,]/}" -lt "$end" ]; do
        ask "$1" "find $2"
        if [ "$result" != 0 ]; then
            found=$(field id)
            return
        fi
        sleep 0.05
    done
    broken "$2 has not signed on within $patience s"
}

# until_ended PROCESS SECONDS
until_ended() {
    local end=$((${EPOCHREALTIME/[.,]/} + $2 * 1000000))
    while kill -0 "$1" 2>/dev/null; do
        [ "${EPOCHREALTIME/[.,]/}" -lt "$end" ] || broken "process $1 still runs after $2 s"
        sleep 0.05
    done
}

leave() {
    printf 'quit\n' >&"${in[$1]}"
    until_ended "${pid[$1]}" "$patience"
}

# ctl ARGUMENT...: shows what juntoractl prints, and keeps it in `output`.
ctl() {
    output=$("$bin/juntoractl" "$@" 2>>"$errors") || broken "juntoractl $* has failed (exit code $?)"
    printf '%s\n' "$output" | sed 's/^/      /'
}

hub_is_gone() {
    local code=0
    "$bin/juntoractl" running >/dev/null 2>&1 || code=$?
    [ "$code" -eq 3 ]
}

# process_with_parent PARENT PROGRAM: the number of the parent's child that runs the program.
process_with_parent() {
    local process
    for process in $(marked_processes "JUNTORA_RUN=$base"); do
        if [ "$(sed -n 's/^PPid:[[:space:]]*//p' "/proc/$process/status" 2>/dev/null)" = "$1" ] &&
            [ "$(cat "/proc/$process/comm" 2>/dev/null)" = "$2" ]; then
            printf '%s' "$process"
            return
        fi
    done
}

# The number of this demonstration's process that runs the program, empty without one.
process_of() {
    local process
    for process in $(marked_processes "JUNTORA_RUN=$base"); do
        if [ "$(cat "/proc/$process/comm" 2>/dev/null)" = "$1" ]; then
            printf '%s' "$process"
            return
        fi
    done
}
