# Set-up, build and test entry points.  See README.md.
SHELL := /bin/bash
MAKEFLAGS += --no-print-directory
.SHELLFLAGS := -eu -o pipefail -c

BUILD     := build
ASAN      := build-asan
JOBS      ?= 2
APT_PKGS  := cmake g++ libboost-dev libgtest-dev libbenchmark-dev libcli11-dev nlohmann-json3-dev libedit-dev \
             scdoc dpkg-dev clang-14 libclang-rt-14-dev llvm-14

# Fuzzing (tests/fuzz, libFuzzer with clang): the targets' build, the build
# that measures their coverage, how long `make fuzz` runs each target, how long
# `make test` does, and which targets (all when empty).
FUZZ              := build-fuzz
FUZZ_COV          := build-fuzz-cov
FUZZ_CXX          ?= clang++-14
FUZZ_SECONDS      ?= 60
FUZZ_TEST_SECONDS ?= 20
FUZZ_TARGETS      ?=

.PHONY: all deps configure build run test bench package clean fuzz-build fuzz fuzz-coverage fuzz-minimize

all: build

deps:
	@missing=""; \
	command -v cmake >/dev/null 2>&1 || missing="$$missing cmake"; \
	command -v g++ >/dev/null 2>&1 || missing="$$missing g++"; \
	[ -f /usr/include/boost/property_tree/ini_parser.hpp ] || missing="$$missing boost"; \
	if [ ! -f /usr/include/gtest/gtest.h ] \
	   && ! ls /usr/lib/cmake/GTest/GTestConfig.cmake /usr/lib/*/cmake/GTest/GTestConfig.cmake >/dev/null 2>&1; then \
	  missing="$$missing gtest"; \
	fi; \
	[ -f /usr/include/benchmark/benchmark.h ] || missing="$$missing benchmark"; \
	[ -f /usr/include/CLI/CLI.hpp ] || missing="$$missing cli11"; \
	[ -f /usr/include/nlohmann/json.hpp ] || missing="$$missing nlohmann-json"; \
	[ -f /usr/include/editline/readline.h ] || missing="$$missing libedit"; \
	command -v scdoc >/dev/null 2>&1 || missing="$$missing scdoc"; \
	command -v dpkg-shlibdeps >/dev/null 2>&1 || missing="$$missing dpkg-dev"; \
	command -v $(FUZZ_CXX) >/dev/null 2>&1 || missing="$$missing clang"; \
	ls /usr/lib/llvm-14/lib/clang/*/lib/linux/libclang_rt.fuzzer-*.a >/dev/null 2>&1 || missing="$$missing libclang-rt"; \
	command -v llvm-cov-14 >/dev/null 2>&1 && command -v llvm-profdata-14 >/dev/null 2>&1 || missing="$$missing llvm"; \
	if [ -n "$$missing" ]; then \
	  echo "missing:$$missing"; \
	  if [ "$$(id -u)" = 0 ]; then \
	    apt-get update && DEBIAN_FRONTEND=noninteractive apt-get install -y $(APT_PKGS); \
	  else \
	    echo "run: sudo apt-get install -y $(APT_PKGS)"; \
	    exit 1; \
	  fi; \
	fi

configure: deps
	@if [ ! -f $(BUILD)/CMakeCache.txt ]; then \
	  cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release; \
	fi

build: configure
	cmake --build $(BUILD) -j$(JOBS)

# Only the program itself: the tests and benchmarks wait for `make test`.
run: configure
	cmake --build $(BUILD) -j$(JOBS) --target drillasm
	cd examples && ../$(BUILD)/drillasm

# The Debian package of the Release build, in $(BUILD)/package/.
package: build
	cd $(BUILD) && cpack -G DEB -B package

test: build
	ctest --test-dir $(BUILD) --output-on-failure -j$(JOBS)
	tests/install_check.sh $(BUILD)
	@if [ ! -f $(ASAN)/CMakeCache.txt ]; then \
	  cmake -S . -B $(ASAN) -DCMAKE_BUILD_TYPE=Debug -DDRILLASM_SANITIZE=ON; \
	fi
	cmake --build $(ASAN) -j$(JOBS)
	ctest --test-dir $(ASAN) --output-on-failure -j$(JOBS)
	$(MAKE) fuzz FUZZ_SECONDS=$(FUZZ_TEST_SECONDS)

# The fuzz targets, built with clang, libFuzzer and ASan/UBSan.
fuzz-build: deps
	@if [ ! -f $(FUZZ)/CMakeCache.txt ]; then \
	  CXX=$(FUZZ_CXX) cmake -S . -B $(FUZZ) -DCMAKE_BUILD_TYPE=Release -DDRILLASM_TESTS=OFF -DDRILLASM_FUZZ=ON; \
	fi
	cmake --build $(FUZZ) -j$(JOBS) --target fuzz_targets

# Each target over its corpus, then fuzzing for FUZZ_SECONDS; the figures at the end.
fuzz: fuzz-build
	tests/fuzz/fuzz.sh run $(FUZZ) $(FUZZ_SECONDS) $(FUZZ_TARGETS)

# The lines of src/ that the corpus (seeds, committed corpus, $(FUZZ)/corpus) reaches.
fuzz-coverage: fuzz-build
	@if [ ! -f $(FUZZ_COV)/CMakeCache.txt ]; then \
	  CXX=$(FUZZ_CXX) cmake -S . -B $(FUZZ_COV) -DCMAKE_BUILD_TYPE=Release -DDRILLASM_TESTS=OFF \
	    -DDRILLASM_FUZZ=ON -DDRILLASM_FUZZ_COVERAGE=ON; \
	fi
	cmake --build $(FUZZ_COV) -j$(JOBS) --target fuzz_targets
	tests/fuzz/fuzz.sh coverage $(FUZZ_COV) $(FUZZ) $(FUZZ_TARGETS)

# The grown corpus of $(FUZZ)/corpus merged into tests/fuzz/corpus.
fuzz-minimize: fuzz-build
	tests/fuzz/fuzz.sh minimize $(FUZZ) $(FUZZ_TARGETS)

bench: build
	@found=0; \
	for b in $(BUILD)/bench/bench_*; do \
	  [ -x "$$b" ] || continue; \
	  found=1; \
	  echo "== $$b"; \
	  "$$b"; \
	done; \
	[ "$$found" = 1 ] || echo "no benchmarks built (bench/*.cpp, Google Benchmark)"
	bench/table.sh $(BUILD)

clean:
	rm -rf $(BUILD) $(ASAN) $(FUZZ) $(FUZZ_COV)
