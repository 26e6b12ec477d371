# SPDX-License-Identifier: GPL-3.0-or-later
include(GoogleTest)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui ShaderTools)
find_package(QCoro6 REQUIRED COMPONENTS Core)
find_package(GTest REQUIRED)
find_package(benchmark REQUIRED)
qcoro_enable_coroutines()

pkg_check_modules(ffmpeg REQUIRED IMPORTED_TARGET libavformat>=59 libavcodec>=59 libavutil libswresample)
pkg_check_modules(pipewire REQUIRED IMPORTED_TARGET libpipewire-0.3)
pkg_check_modules(hwy REQUIRED IMPORTED_TARGET libhwy)
pkg_check_modules(xcursor REQUIRED IMPORTED_TARGET xcursor)
pkg_check_modules(xcb REQUIRED IMPORTED_TARGET xcb xcb-shm xcb-xfixes xcb-damage xcb-composite xcb-randr
                  xcb-xinput xcb-xkb xcb-xtest xkbcommon xkbcommon-x11)

