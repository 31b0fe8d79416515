# NorvaneBar: `make run` starts the app, `make test` builds and runs every test.
# Every target installs what it needs first (scripts/setup).

.PHONY: run test bench fuzz format lint clean setup

run:
	@scripts/run

test:
	@scripts/test

bench:
	@scripts/bench

fuzz:
	@scripts/fuzz

format:
	@scripts/format

lint:
	@scripts/lint

setup:
	@scripts/setup

clean:
	rm -rf build
