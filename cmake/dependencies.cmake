# Everything that is not ours; packages.txt names the Debian packages that bring it.
find_package(PkgConfig REQUIRED)
find_package(ZLIB REQUIRED)
pkg_check_modules(ALLEGRO REQUIRED IMPORTED_TARGET allegro)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
# By its name alone: its own folder of headers would hide the zip.h of the other library.
find_library(MINIZIP_LIBRARY minizip REQUIRED)
pkg_check_modules(LIBZIP REQUIRED IMPORTED_TARGET libzip)
find_package(PNG REQUIRED)
find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(GTest REQUIRED)
find_package(benchmark REQUIRED)
find_package(Qt6 REQUIRED COMPONENTS Core Gui Widgets)
