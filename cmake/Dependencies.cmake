# What the libraries are built on; a tool's, test's or benchmark's own needs stand in its folder.
find_package(Threads REQUIRED)
find_package(ICU REQUIRED COMPONENTS uc i18n)
find_package(absl REQUIRED)
find_package(Boost 1.74 REQUIRED COMPONENTS regex)
find_package(PkgConfig REQUIRED)
find_package(XercesC 3.2 REQUIRED)
pkg_check_modules(PCRE REQUIRED IMPORTED_TARGET libpcre)
