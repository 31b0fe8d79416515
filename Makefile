# NorvaneBar: `make run` starts the app, `make test` builds and runs every test, `make package` builds
# the Debian package.
# Every target installs what it needs first (scripts/setup).

.PHONY: run test bench fuzz package format lint clean setup

run:
	@scripts/run

test:
	@scripts/test

bench:
	@scripts/bench

fuzz:
	@scripts/fuzz

package:
	@scripts/package

format:
	@scripts/format

lint:
	@scripts/lint

setup:
	@scripts/setup

clean:
	rm -rf build
