# Sourced by the scripts: prints one line for each step, keeps the details in a log, and shows what to do on a failure.

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
logs=build/logs
mkdir -p "$logs"

if command -v ccache >/dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
  # The tests of the package compile the same sources again in other folders.
  export CCACHE_NOHASHDIR=1
fi

# step NAME TEXT COMMAND...: prints TEXT, runs COMMAND with its output in build/logs/NAME.log.
step() {
  local log="$logs/$1.log" text=$2 start=$SECONDS
  shift 2
  printf '%s ... ' "$text"
  if "$@" >"$log" 2>&1 </dev/null; then
    printf 'done (%d s)\n' $((SECONDS - start))
  else
    printf 'FAILED (exit status %d)\n' $?
    printf 'The last lines of %s, which has it all:\n\n' "$log"
    tail -n 40 "$log"
    return 1
  fi
}

# build PRESET [TARGET...]: configures and builds.
build() {
  local preset=$1
  shift
  cmake --preset "$preset" && cmake --build --preset "$preset" ${@:+--target "$@"}
}
