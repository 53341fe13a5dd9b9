# Shared by ./run and ./check: the packages and the build. Sourced from the root of the tree.

# Installs what packages.txt names and the system lacks.
install_packages() {
    command -v dpkg-query >/dev/null || {
        echo "This is no Debian system: make sure that what packages.txt names is installed."
        return 0
    }
    local wanted missing
    wanted=$(sed 's/#.*//' packages.txt | tr -d ' ' | grep . | sort)
    # shellcheck disable=SC2086  # names of packages, which hold no blanks
    mapfile -t missing < <(comm -23 <(echo "$wanted") \
        <(dpkg-query -W -f='${Package} ${Status}\n' $wanted 2>/dev/null |
            sed -n 's/ .* ok installed$//p' | sort))
    [ ${#missing[@]} -eq 0 ] && return 0
    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "Missing packages, and no sudo to install them with: ${missing[*]}" >&2
            return 1
        }
        root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${root[@]}" apt-get update -qq
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
        --no-install-recommends "${missing[@]}" >/dev/null
}

# build_preset NAME [TARGET...]: configures and builds build/NAME, quietly when all is well.
build_preset() {
    local preset=$1
    shift
    mkdir -p build
    local log=build/$preset.log
    if ! { cmake --preset "$preset" && cmake --build --preset "$preset" ${1:+--target "$@"}; } \
        >"$log" 2>&1; then
        tail -n 60 "$log" >&2
        echo "The $preset build failed; all of it is in $log" >&2
        return 1
    fi
}
