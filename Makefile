# SPDX-License-Identifier: GPL-3.0-or-later
# Two commands for a newcomer: `make run` and `make test`. Both install what the
# machine lacks first (scripts/install-deps.sh skips what is there).

JOBS ?= $(shell nproc 2>/dev/null || echo 2)
RELEASE_DIR := build/release
DEBUG_DIR := build/debug

FUZZ_SECONDS ?= 60
FUZZ_DIR := build/fuzz
FUZZ_TARGETS := fuzz_korva fuzz_progress fuzz_chapter fuzz_settings fuzz_cardtext
# Inputs up to these sizes (bytes): files of hundreds of records, lists of
# thousands of lines. No single allocation may pass 256 MB; the process as a
# whole gets 2 GB, as the sanitizer's allocator keeps what was freed.
FUZZ_MAX_LEN_korva := 65536
FUZZ_MAX_LEN_progress := 65536
FUZZ_MAX_LEN_chapter := 65536
FUZZ_MAX_LEN_settings := 65536
FUZZ_MAX_LEN_cardtext := 262144

PREFIX ?= /usr/local

MUTATE_DIR ?=
MUTATE_BUDGET ?= 40
MUTATE_SEED ?= 1
MUTATE_ARGS ?=

.PHONY: run test build debug deps package-deps bench fuzz mutate install deb package-check screenshots clean

deps:
	@bash scripts/install-deps.sh

package-deps: deps
	@bash scripts/install-deps.sh --package

$(RELEASE_DIR)/CMakeCache.txt:
	cmake -S . -B $(RELEASE_DIR) -DCMAKE_BUILD_TYPE=Release -DVOCABRIX_TESTS=OFF

# The benchmark is built here too (not run), so that it keeps compiling.
$(DEBUG_DIR)/CMakeCache.txt:
	cmake -S . -B $(DEBUG_DIR) -DCMAKE_BUILD_TYPE=Debug -DVOCABRIX_SANITIZE=ON -DVOCABRIX_BENCH=ON

build: deps $(RELEASE_DIR)/CMakeCache.txt
	cmake --build $(RELEASE_DIR) -j $(JOBS)

run: build
	./$(RELEASE_DIR)/vocabrix

# Installs the release build under PREFIX (DESTDIR is honoured): the programs
# with the examples and the manual in lib/vocabrix, links in bin, the rest in
# share. It builds what is missing but installs no packages: `make run` does.
install: $(RELEASE_DIR)/CMakeCache.txt
	cmake --build $(RELEASE_DIR) -j $(JOBS)
	DESTDIR="$(DESTDIR)" cmake --install $(RELEASE_DIR) --prefix $(PREFIX)

# The Debian package of the release build, in build/release.
deb: package-deps $(RELEASE_DIR)/CMakeCache.txt
	cmake --build $(RELEASE_DIR) -j $(JOBS)
	rm -f $(RELEASE_DIR)/vocabrix_*.deb
	cd $(RELEASE_DIR) && cpack -G DEB

# Lintian and the desktop's validators on the package, and the end-to-end
# test run against the programs unpacked from it.
package-check: debug deb
	bash scripts/check-package.sh $(RELEASE_DIR)/vocabrix_*.deb $(DEBUG_DIR)

# The metainfo's screenshots (published under the project page's
# screenshots/) and the manual's pictures of every window (doc/screenshots),
# from the pictures the tests took of the real windows (run `make test` first).
screenshots: package-deps
	bash scripts/update-screenshots.sh $(DEBUG_DIR)/screens packaging/screenshots doc/screenshots

debug: deps $(DEBUG_DIR)/CMakeCache.txt
	cmake --build $(DEBUG_DIR) -j $(JOBS)

test: debug
	cd $(DEBUG_DIR) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)
	@$(MAKE) --no-print-directory package-check

bench: deps $(RELEASE_DIR)/CMakeCache.txt
	cmake -S . -B $(RELEASE_DIR) -DVOCABRIX_BENCH=ON
	cmake --build $(RELEASE_DIR) -j $(JOBS) --target vocabrix_bench
	./$(RELEASE_DIR)/vocabrix_bench

# Runs each reader's fuzz target for FUZZ_SECONDS (clang's libFuzzer), leaks
# included. Seeds in fuzz/seeds/NAME; what the fuzzer finds grows in
# build/fuzz/corpus/NAME.
fuzz: deps
	@bash scripts/install-deps.sh --fuzz
	cmake -S . -B $(FUZZ_DIR) -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
		-DVOCABRIX_FUZZ=ON -DVOCABRIX_TESTS=OFF
	cmake --build $(FUZZ_DIR) -j $(JOBS) --target $(FUZZ_TARGETS)
	@for t in $(FUZZ_TARGETS); do \
		name=$${t#fuzz_}; mkdir -p $(FUZZ_DIR)/corpus/$$name; \
		case $$name in \
			korva) len=$(FUZZ_MAX_LEN_korva);; progress) len=$(FUZZ_MAX_LEN_progress);; \
			chapter) len=$(FUZZ_MAX_LEN_chapter);; settings) len=$(FUZZ_MAX_LEN_settings);; \
			*) len=$(FUZZ_MAX_LEN_cardtext);; \
		esac; \
		echo "== $$t"; \
		ASAN_OPTIONS=detect_leaks=1 ./$(FUZZ_DIR)/$$t -max_total_time=$(FUZZ_SECONDS) -max_len=$$len \
			-malloc_limit_mb=256 -rss_limit_mb=2048 \
			-print_final_stats=1 $(FUZZ_DIR)/corpus/$$name fuzz/seeds/$$name || exit 1; \
	done

# Puts single faults into the code of MUTATE_DIR (folders, or `all`) and reports how
# many the tests catch (build/mutate); MUTATE_ARGS passes more options (--help lists them).
mutate: deps
	python3 scripts/test_mutate.py -q
	python3 scripts/mutate.py --budget $(MUTATE_BUDGET) --seed $(MUTATE_SEED) $(MUTATE_ARGS) $(MUTATE_DIR)

clean:
	rm -rf build
