# Everything that is not ours; packages.txt names the Debian packages that bring it.
find_package(PkgConfig REQUIRED)
find_package(ZLIB REQUIRED)
pkg_check_modules(ALLEGRO REQUIRED IMPORTED_TARGET allegro)
pkg_check_modules(MINIZIP REQUIRED IMPORTED_TARGET minizip)
find_package(GTest REQUIRED)
find_package(benchmark REQUIRED)
find_package(Qt6 REQUIRED COMPONENTS Core Gui Widgets)
