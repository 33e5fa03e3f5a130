#!/bin/bash -eu
# Builds the fuzz targets as OSS-Fuzz wants them: build.sh [TARGET...], all without any. Takes what OSS-Fuzz sets: CC,
# CXX, CFLAGS, CXXFLAGS, LIB_FUZZING_ENGINE, SRC, WORK and OUT; the project is SRC/kvr_xml_producer. A target goes to OUT
# with its seeds as TARGET_seed_corpus.zip, and the libraries that it needs to OUT/lib: where targets are run, no
# packages are installed.
cd "$SRC/kvr_xml_producer"

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
    for source in fuzz/kvr_fuzz_*.cpp; do
        targets+=("$(basename "$source" .cpp)")
    done
fi
# The packaged libraries are built with the other C++ library.
export CXXFLAGS="${CXXFLAGS//-stdlib=libc++/}"
cmake -G Ninja -S . -B "$WORK/kvr" -D BUILD_SHARED_LIBS=OFF -D KVR_BUILD_FUZZ=ON -D KVR_BUILD_TESTS=OFF \
    -D KVR_BUILD_BENCH=OFF -D KVR_BUILD_PYTHON=OFF -D KVR_BUILD_VIEWER=OFF \
    -D KVR_FUZZING_ENGINE="$LIB_FUZZING_ENGINE" -D CMAKE_BUILD_RPATH="\$ORIGIN/lib"
cmake --build "$WORK/kvr" --target "${targets[@]}"

mkdir -p "$OUT/lib"
for target in "${targets[@]}"; do
    cp "$WORK/kvr/bin/$target" "$OUT/"
    seeds=$WORK/seeds/$target
    rm -rf "$seeds" "$OUT/${target}_seed_corpus.zip"
    mkdir -p "$seeds"
    cp "fuzz/seeds/$target"/* "$seeds"
    [ ! -f "fuzz/corpus/$target.zip" ] || python3 -m zipfile -e "fuzz/corpus/$target.zip" "$seeds"
    # Too many for a command line.
    (cd "$seeds" && find . -type f | sed 's|^\./||' | zip -q -@ "$OUT/${target}_seed_corpus.zip")
    # All but those of the C library, which are those of the system that runs it.
    ldd "$OUT/$target" | awk '$3 ~ /^\// {print $3}' |
        { grep -v -E '/(libc|libm|libdl|libpthread|librt|libresolv)\.so' || true; } |
        xargs -r cp -n -L -t "$OUT/lib"
done
