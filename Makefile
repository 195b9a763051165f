# make run   installs what is missing, builds, starts Telvane on the virtual station
# make test  installs what is missing, builds, checks the floors, runs every test
# make build / make bench / make format
# make fuzz  builds the fuzz targets with clang and runs each FUZZ_SECONDS (60) s; not in make test
# make soak  builds telvane-soak (no sanitizers) and runs it SOAK_SECONDS (120) s; not in make test
NATIVE := build/native
WIN    := build/win
BENCH  := build/bench
JOBS   ?= $(shell nproc)
FUZZ_SECONDS ?= 60
SOAK   := build/soak
SOAK_SECONDS ?= 120

.PHONY: deps build build-native build-win run test bench fuzz soak format clean

deps:
	@scripts/install-deps

build: deps build-native build-win

build-native:
	cmake -S . -B $(NATIVE) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTELVANE_SANITIZE=ON >/dev/null
	cmake --build $(NATIVE) -j$(JOBS)

build-win:
	cmake -S . -B $(WIN) -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake -DCMAKE_BUILD_TYPE=Release >/dev/null
	cmake --build $(WIN) -j$(JOBS)

run: build
	scripts/run-sim

test: build
	scripts/check-floors
	ctest --test-dir $(NATIVE) --output-on-failure
	ctest --test-dir $(WIN) --output-on-failure

bench: deps
	cmake -S . -B $(BENCH) -DCMAKE_BUILD_TYPE=Release -DTELVANE_BENCH=ON -DTELVANE_TESTS=OFF >/dev/null
	cmake --build $(BENCH) -j$(JOBS) --target telvane_bench
	$(BENCH)/out/telvane_bench

fuzz: deps
	FUZZ_SECONDS=$(FUZZ_SECONDS) JOBS=$(JOBS) scripts/fuzz

soak: deps
	cmake -S . -B $(SOAK) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTELVANE_SOAK=ON -DTELVANE_TESTS=OFF >/dev/null
	cmake --build $(SOAK) -j$(JOBS) --target telvane-soak
	$(SOAK)/out/telvane-soak $(SOAK_SECONDS)

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf build
