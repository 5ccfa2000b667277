# Set-up and everyday commands. Each target installs what is missing and builds first.
BUILD      ?= build
BENCH_DIR  ?= build-release
CMAKE_GEN  := -G Ninja

.PHONY: deps build run test test-sanitize bench clean

deps:
	@scripts/install-deps

# Tests build optimised with assertions on (no NDEBUG).
$(BUILD)/build.ninja: | deps
	cmake -S . -B $(BUILD) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=RelWithAsserts \
	  -DCMAKE_CXX_FLAGS_RELWITHASSERTS="-O2 -g1" -DDICEHALL_TESTS=ON

build: deps $(BUILD)/build.ninja
	cmake --build $(BUILD)

# The desktop table when there is a display to open it on; otherwise a short demo
# session of the simulator.
run: build
	@if [ -n "$$DISPLAY$$WAYLAND_DISPLAY" ]; then exec ./$(BUILD)/dicehall; fi; \
	echo "make run: no display (DISPLAY and WAYLAND_DISPLAY are unset), so here is the headless demo instead."; \
	./$(BUILD)/dicehall-sim --sessions 5 --session-rolls 4000 --seed 2026 \
	  --player Ann:5000 --player Bob:3000 --player Cy:20000:examples/martingale_passline.bet \
	  --player Dee:5000:examples/iron_cross.bet \
	  --bet "Ann:Pass Line=10" --bet "Ann:Pass Line Odds=20" \
	  --bet "Bob:Don't Pass=5" --bet "Bob:Place 8=12" --on-win "Bob=same-bet"

test: build
	cd $(BUILD) && ctest -j2 --output-on-failure

# The tests again under AddressSanitizer and UndefinedBehaviorSanitizer, in a folder of
# their own, with the table's rules checked after every roll and every store index checked.
SANITIZE_DIR ?= build-sanitize
SANITIZE_FLAGS := -O1 -g -fno-omit-frame-pointer -fsanitize=address,undefined -fno-sanitize-recover=all \
  -DDICEHALL_CHECK_ROLLS -D_GLIBCXX_ASSERTIONS
$(SANITIZE_DIR)/build.ninja: | deps
	cmake -S . -B $(SANITIZE_DIR) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Sanitize \
	  -DCMAKE_CXX_FLAGS_SANITIZE="$(SANITIZE_FLAGS)" \
	  -DCMAKE_EXE_LINKER_FLAGS_SANITIZE="-fsanitize=address,undefined" -DDICEHALL_TESTS=ON -DDICEHALL_DESKTOP=OFF

test-sanitize: deps $(SANITIZE_DIR)/build.ninja
	cmake --build $(SANITIZE_DIR)
	cd $(SANITIZE_DIR) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
	  ctest -j2 --output-on-failure -E "HoldsAfterEveryRollOfEightSystems"

# Release programs built twice, the second time guided by a profile of the simulator at
# work (scripts/pgo-build).
bench: deps
	scripts/pgo-build $(BENCH_DIR) -DDICEHALL_TESTS=OFF -DDICEHALL_BENCH=ON
	./$(BENCH_DIR)/dicehall-bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
	./$(BENCH_DIR)/dicehall-sim --bench
	QT_QPA_PLATFORM=offscreen ./$(BENCH_DIR)/dicehall-desktop-bench

clean:
	rm -rf $(BUILD) $(BENCH_DIR)
