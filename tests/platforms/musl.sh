#!/usr/bin/env bash
# musl.sh FOLDER: makes there a C++ standard library for musl, which Debian has without one, from the sources of Debian's GCC; FOLDER/musl.specs
# tells g++ to compile and link with both (statically: -static).
set -euo pipefail
folder=$1
sources=$(cd "$(dirname "$0")" && pwd)
musl=/usr/lib/x86_64-linux-musl/musl-gcc.specs
[ ! "$folder/musl.specs" -nt "${BASH_SOURCE[0]}" ] || exit 0

rm -rf "$folder"
mkdir -p "$folder/source" "$folder/build/libgcc" "$folder/build/libstdc++-v3"
cd "$folder"
archive=$(echo /usr/src/gcc-12/gcc-12.*.tar.xz)
tar -xf "$archive" -C source --strip-components=1 --wildcards --exclude='*/libstdc++-v3/testsuite/*.cc' --exclude='*/libstdc++-v3/doc/html/*' \
    '*/libstdc++-v3' '*/libiberty' '*/libgcc' 'gcc-*/include' 'gcc-*/config' '*/gcc/BASE-VER' '*/gcc/DATESTAMP' 'gcc-12*/install-sh' 'gcc-12*/*.sub' \
    'gcc-12*/*.guess' 'gcc-12*/*.sh' 'gcc-12*/*.m4' 'gcc-12*/mkinstalldirs' 'gcc-12*/missing' 'gcc-12*/config-ml.in'

# Where a build of all of GCC would leave the threads that it chose; without them there is no std::mutex.
ln -s ../../source/libgcc/gthr-posix.h build/libgcc/gthr-default.h
# All functions of threads are linked: a static program would lack those that are only asked for weakly.
sed -i '1i #define GTHREAD_USE_WEAK 0' source/libgcc/gthr.h

(
    cd build/libstdc++-v3
    ../../source/libstdc++-v3/configure --build=x86_64-linux-gnu --host=x86_64-linux-musl --prefix="$folder" --with-gxx-include-dir="$folder/include/c++" \
        --disable-multilib --disable-shared --disable-nls --disable-libstdcxx-pch CC="gcc -specs $musl" CXX="g++ -specs $musl" CFLAGS=-O2 CXXFLAGS=-O2
    grep -q '^#define _GLIBCXX_HAS_GTHREADS 1' config.h
    for part in include libsupc++ src; do
        make -C $part -j"$(nproc)"
        make -C $part install
    done
)

gcc -specs $musl -O2 -c "$sources/find_object.c" -o find_object.o
ar r lib/libfind_object.a find_object.o
sed -e "s|-nostdinc |&-isystem $folder/include/c++ -isystem $folder/include/c++/x86_64-linux-musl |" -e "s|^-dynamic-linker|--eh-frame-hdr &|" \
    -e "s|^-L/usr/lib/x86_64-linux-musl|-L$folder/lib &|" -e "s|libgcc_eh.a%s)|& -lfind_object|" $musl >musl.specs.new
mv musl.specs.new musl.specs
rm -rf source build
