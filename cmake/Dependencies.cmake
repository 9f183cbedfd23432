# Libraries from the distribution that the product itself needs. Tools and tests look for their own.
find_package(PkgConfig REQUIRED)
pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET GLOBAL glib-2.0>=2.58)
pkg_check_modules(GIO REQUIRED IMPORTED_TARGET GLOBAL gio-2.0>=2.58)
pkg_check_modules(LTTNG_UST REQUIRED IMPORTED_TARGET GLOBAL lttng-ust)
