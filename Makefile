# Thin wrapper over CMake. `make demo` renders with the preview tool. `make test` checks that
# tests stay within a third of the code, runs every test twice (plainly and under
# AddressSanitizer + UndefinedBehaviorSanitizer), the threaded host tests under
# ThreadSanitizer, the plain tests again on arm64 and 32-bit ARM builds under qemu-user, then
# the libFuzzer targets for a bounded time.
BUILD       ?= build
BUILD_ASAN  ?= build-asan
BUILD_TSAN  ?= build-tsan
BUILD_FUZZ  ?= build-fuzz
BUILD_ARM64 ?= build-arm64
BUILD_ARMHF ?= build-armhf
BUILD_DEMO  ?= build-demo
JOBS        ?= $(shell nproc)
CTEST_FLAGS ?= --output-on-failure --no-tests=error -j $(JOBS) --timeout 600

.PHONY: all setup build demo test test-ratio test-plain test-sanitize test-threads test-arm64 \
        test-armhf test-fuzz format

all: build

setup:
	@bash scripts/setup.sh

build: setup
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(BUILD) -j $(JOBS)

# Only the library, the samples and the preview, optimised, in a folder of their own.
demo:
	@bash scripts/setup.sh demo
	cmake -S . -B $(BUILD_DEMO) -DCMAKE_BUILD_TYPE=Release -DTALVEQAM_TESTS=OFF \
	      -DTALVEQAM_BENCHMARKS=OFF
	cmake --build $(BUILD_DEMO) -j $(JOBS) --target qam-preview qam_watercolour qam_sparkle_ring \
	      qam_ripple
	bash scripts/demo.sh $(BUILD_DEMO)

test: test-ratio test-plain test-sanitize test-threads test-arm64 test-armhf test-fuzz

test-ratio:
	bash scripts/test-ratio.sh

test-plain: build
	cd $(BUILD) && ctest $(CTEST_FLAGS)

test-sanitize: setup
	cmake -S . -B $(BUILD_ASAN) -DCMAKE_BUILD_TYPE=Debug -DTALVEQAM_SANITIZE=ON
	cmake --build $(BUILD_ASAN) -j $(JOBS)
	cd $(BUILD_ASAN) && ctest $(CTEST_FLAGS)

# Only what runs on several threads: the host driven from two of them.
test-threads: setup
	cmake -S . -B $(BUILD_TSAN) -DCMAKE_BUILD_TYPE=Debug -DTALVEQAM_TSAN=ON -DTALVEQAM_BENCHMARKS=OFF
	cmake --build $(BUILD_TSAN) -j $(JOBS) --target test_Common_Native qam_null_effect
	cd $(BUILD_TSAN) && TSAN_OPTIONS=halt_on_error=1 ctest $(CTEST_FLAGS) -R '^HostThreadsTest'

# Cross-built with Debian's compilers against a Debian root of that architecture; CTest runs
# every test program through qemu-user (the JVM tests stay on the build machine).
test-arm64: setup
	$(call cross-test,$(BUILD_ARM64),aarch64-linux-gnu)

test-armhf: setup
	$(call cross-test,$(BUILD_ARMHF),arm-linux-gnueabihf)

define cross-test
	cmake -S . -B $(1) -DCMAKE_TOOLCHAIN_FILE=$(CURDIR)/cmake/$(2).cmake \
	      -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTALVEQAM_BENCHMARKS=OFF
	cmake --build $(1) -j $(JOBS)
	cd $(1) && ctest $(CTEST_FLAGS)
endef

test-fuzz: setup
	JOBS=$(JOBS) bash scripts/fuzz.sh $(BUILD_FUZZ)

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i
