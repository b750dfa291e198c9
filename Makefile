# The front door: every target does all that it needs, installing missing packages included.
# `make help` lists the targets.
PREFIX ?= /usr/local
SECONDS ?= 60
presets := CMakePresets.json
install_packages := packaging/install-packages

.DEFAULT_GOAL := build
.PHONY: help demo test test-browser screenshot build windows test-windows sanitizers clang faults fuzz bench package deb \
        zip try-packages install uninstall format check-format check-includes check-tidy clean

help:
	@echo 'make build         programs, libraries and optlinfit.def in build/release/bin'
	@echo 'make demo          build, then solve the Longley example, show the results file and write a report page'
	@echo 'make test          build, then run the tests'
	@echo 'make test-browser  build, then test the report page in Chromium'
	@echo 'make screenshot    take the picture of the report page that README.md shows'
	@echo 'make windows       the same for Windows x86-64, in build/windows/bin'
	@echo 'make test-windows  build for Windows, then run the tests under wine'
	@echo 'make sanitizers    build with the sanitizers, then run the tests'
	@echo 'make faults        run the programs with every call for memory and files failing once; prints a table'
	@echo 'make fuzz          run each fuzz target for SECONDS (now $(SECONDS))'
	@echo 'make clang         build the programs with clang, which warns of other things than g++'
	@echo 'make bench         run the solver beside R, Python, gretl and Octave; writes bench/RESULTS.md'
	@echo 'make package       a Debian package and a Windows zip in build/packages; deb, zip: one of them'
	@echo 'make try-packages  make both, unpack them in a scratch directory and solve an example'
	@echo 'make install       install below PREFIX (now $(PREFIX)); uninstall removes it again'
	@echo 'make format        format the sources; check-format, check-includes and check-tidy only look'
	@echo 'make clean         remove build/'

build: build/release/build.ninja
	@cmake --build --preset release --target programs

demo: build
	@mkdir -p build/demo
	@cd build/demo && ../release/bin/tavolite solve ../../examples/longley.mod --report report.html
	@cd build/demo && ../release/bin/tavolite show linfit.tdx
	@echo && echo 'The report page, for the browser: $(CURDIR)/build/demo/report.html'

test: build/release/build.ninja
	@cmake --build --preset release
	@ctest --preset release

clang: build/clang/build.ninja
	@cmake --build --preset clang --target programs

windows: build/windows/build.ninja
	@cmake --build --preset windows --target programs

# Configured again, since the tests may have been left out for lack of their sources. The first program in a new
# WINEPREFIX would race with the second.
test-windows: windows-libraries build/windows/wine/system.reg
	@cmake --preset windows
	@cmake --build --preset windows
	@ctest --preset windows

test-browser: build build/browser/node_modules
	@cd build/browser && TAVOLITE=../release/bin/tavolite node --test ../../tests/browser/report_test.mjs

screenshot: demo build/browser/node_modules
	@cd build/browser && node ../../tests/browser/screenshot.mjs ../demo/report.html ../../docs/report.png

build/browser/node_modules: tests/browser/package-lock.json
	@$(install_packages) browser
	@mkdir -p $(@D)
	@cp tests/browser/package.json tests/browser/package-lock.json $(@D)
	@npm ci --prefix $(@D) --ignore-scripts --no-audit --no-fund
	@touch $@

sanitizers: build/sanitizers/build.ninja
	@cmake --build --preset sanitizers
	@ctest --preset sanitizers

faults: build
	@cmake --build --preset release --target fault_matrix library_faults_test
	@LINFIT_ALL_FAULTS=1 build/release/tests/library_faults_test --gtest_brief=1
	@build/release/tests/fault_matrix build/release/bin build/release/tests/faults_shim.so tests/chain/data $(RUNS)

fuzz: build/fuzz/build.ninja
	@cmake --build --preset fuzz
	@tests/fuzz/run build/fuzz $(SECONDS)

package: deb zip

deb: build/deb/build.ninja
	@cmake --build --preset deb
	@cpack --preset deb

zip: windows
	@cpack --preset windows

try-packages: package build/windows/wine/system.reg
	@$(install_packages) try
	@packaging/try-packages

install: build
	cmake --install build/release --prefix '$(PREFIX)'

# What the last `make install` of this tree installed, and the directories that are empty then.
uninstall:
	@packaging/uninstall build/release/install_manifest.txt

bench: build/release/build.ninja
	@cmake --build --preset release
	@bench/run

format:
	@$(install_packages) checks
	@git ls-files '*.cpp' '*.h' | xargs clang-format-14 -i

check-format:
	@$(install_packages) checks
	@git ls-files '*.cpp' '*.h' | xargs clang-format-14 --dry-run --Werror

check-includes:
	@packaging/check-includes

check-tidy: build
	@$(install_packages) checks
	@packaging/check-tidy

clean:
	rm -rf build

# A tree is configured once; ninja configures again when its inputs change. The packages are looked at in
# every run, which takes no time.
build/release/build.ninja build/sanitizers/build.ninja: $(presets) | build-packages
	cmake --preset $(notdir $(@D))
build/clang/build.ninja build/fuzz/build.ninja build/deb/build.ninja: build/%/build.ninja: $(presets) | %-packages
	cmake --preset $*

build/windows/build.ninja: $(presets) cmake/toolchain-mingw64.cmake | windows-libraries
	cmake --preset windows

build/windows/wine/system.reg: | wine-packages
	packaging/wine-run wineboot --init

.PHONY: build-packages clang-packages fuzz-packages deb-packages wine-packages windows-libraries
build-packages:
	@$(install_packages) common libraries build
clang-packages:
	@$(install_packages) common libraries build clang
fuzz-packages:
	@$(install_packages) common libraries build fuzz
deb-packages:
	@$(install_packages) common libraries deb
wine-packages:
	@$(install_packages) wine
windows-libraries:
	@$(install_packages) common windows
	@packaging/windows-libraries
