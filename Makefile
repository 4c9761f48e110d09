# "make help" lists the commands. Each first installs the packages that it needs (tools/setup).
MAKEFLAGS += --no-print-directory
MINIAUDIO := build/deps/miniaudio/miniaudio.h

# ThreadSanitizer can't map its memory if the kernel randomises addresses too widely.
SAME_ADDRESSES := $(shell setarch --addr-no-randomize true 2>/dev/null && echo setarch --addr-no-randomize)

.PHONY: help
help: ## lists the commands
	@sed -nE 's/^([a-z]+):[^#]*## (.*)$$/make \1\t\2/p' $(MAKEFILE_LIST) | expand -t 14

.PHONY: run
run: ## builds the player and starts it; on a machine without a display, the demonstration
	@tools/setup build run $(if $(DISPLAY)$(WAYLAND_DISPLAY),,demo)
	@$(MAKE) release
	@tools/run

.PHONY: demo
demo: ## drives the player with real clicks over generated music; reports what was seen and heard
	@tools/setup build run demo
	@$(MAKE) release
	@tools/demo

.PHONY: check
check: ## builds and runs only the unit tests; ONLY=pattern runs those whose names match
	@tools/setup build demo test
	@$(MAKE) build/check/build.ninja
	@cmake --build --preset check
	@ctest --preset check $(if $(ONLY),--tests-regex '$(ONLY)')

.PHONY: test
test: ## runs all tests under the address, undefined-behaviour and thread sanitizers
	@tools/setup build run demo test
	@$(MAKE) sanitized-asan sanitized-tsan races
	ctest --preset asan

.PHONY: bench
bench: ## measures the parts and the program against their baselines; ONLY="tones start" selects groups
	@tools/setup build run demo test bench
	@$(MAKE) build/bench/build.ninja
	cmake --build --preset bench
	@bench/run build/bench $(ONLY)

.PHONY: corpus
corpus: ## reads and decodes the files in DIR=…; prints what other programs find different
	@tools/setup build run demo test bench
	@$(MAKE) build/bench/build.ninja
	@cmake --build --preset bench --target corpus_probe
	@bench/corpus build/bench/bench/corpus_probe '$(or $(DIR),$(error DIR=… names a folder of sound files))' build/corpus.json

.PHONY: fuzz
fuzz: ## feeds damaged input to each parser for a minute (SECONDS_EACH=60)
	@tools/setup build run lint fuzz
	@$(MAKE) build/fuzz/build.ninja
	cmake --build --preset fuzz
	@fuzz/run build/fuzz $(or $(SECONDS_EACH),60)

.PHONY: deb
deb: ## builds a Debian package in build/deb
	@tools/setup build run deb
	@$(MAKE) build/release/build.ninja
	@cmake --build --preset release
	@rm -rf build/deb
	@cpack --config build/release/CPackConfig.cmake -B build/deb
	@lintian --fail-on error build/deb/*.deb

.PHONY: releases
releases: ## builds, installs and plays the package on fresh systems of each Debian release; as root
	@tools/setup demo deb releases
	@tools/check-flatpak
	@tools/check-releases

.PHONY: lint
lint: ## checks format, layers, words, commit subjects, QML and C++ without running anything
	@tools/setup build run test lint
	@$(MAKE) build/asan/build.ninja
	@tools/lint build/asan

.PHONY: format
format: ## formats all C++ source
	@tools/setup lint
	@git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format -i

.PHONY: clean
clean: ## removes everything that was built or fetched
	rm -rf build

# Steps of the commands above. The program as users run it:
.PHONY: release
release: build/release/build.ninja
	@cmake --build --preset release --target tamsy-music

.PHONY: sanitized-asan
sanitized-asan: build/asan/build.ninja
	cmake --build --preset asan

# Only the tests that use threads.
.PHONY: sanitized-tsan
sanitized-tsan: build/tsan/build.ninja
	cmake --build --preset tsan --target tamsy_thread_tests

# They mostly wait for sound, so two run at once.
.PHONY: races
races:
	$(SAME_ADDRESSES) ctest --preset tsan

# Ninja notices changed CMake files, but not a changed preset.
build/%/build.ninja: CMakePresets.json $(MINIAUDIO)
	cmake --preset $*
	@touch $@

$(MINIAUDIO): tools/fetch-miniaudio
	tools/fetch-miniaudio $(@D)
	@touch $@
