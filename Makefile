# Set-up, build and test entry points.  See README.md.
SHELL := /bin/bash
MAKEFLAGS += --no-print-directory
.SHELLFLAGS := -eu -o pipefail -c

BUILD     := build
ASAN      := build-asan
JOBS      ?= 2
APT_PKGS  := cmake g++ libboost-dev libgtest-dev libbenchmark-dev libcli11-dev nlohmann-json3-dev libedit-dev \
             scdoc dpkg-dev

.PHONY: all deps configure build run test bench package clean

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
	rm -rf $(BUILD) $(ASAN)
