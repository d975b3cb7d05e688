# Two commands for a newcomer: `make run` and `make test`. Both install what the
# machine lacks first (scripts/install-deps.sh skips what is there).

JOBS ?= $(shell nproc 2>/dev/null || echo 2)
RELEASE_DIR := build/release
DEBUG_DIR := build/debug

.PHONY: run test build debug deps bench clean

deps:
	@bash scripts/install-deps.sh

$(RELEASE_DIR)/CMakeCache.txt:
	cmake -S . -B $(RELEASE_DIR) -DCMAKE_BUILD_TYPE=Release -DVOCABRIX_TESTS=OFF

$(DEBUG_DIR)/CMakeCache.txt:
	cmake -S . -B $(DEBUG_DIR) -DCMAKE_BUILD_TYPE=Debug -DVOCABRIX_SANITIZE=ON

build: deps $(RELEASE_DIR)/CMakeCache.txt
	cmake --build $(RELEASE_DIR) -j $(JOBS)

run: build
	./$(RELEASE_DIR)/vocabrix

debug: deps $(DEBUG_DIR)/CMakeCache.txt
	cmake --build $(DEBUG_DIR) -j $(JOBS)

test: debug
	cd $(DEBUG_DIR) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

bench: deps $(RELEASE_DIR)/CMakeCache.txt
	cmake -S . -B $(RELEASE_DIR) -DVOCABRIX_BENCH=ON
	cmake --build $(RELEASE_DIR) -j $(JOBS) --target vocabrix_bench
	./$(RELEASE_DIR)/vocabrix_bench

clean:
	rm -rf build
