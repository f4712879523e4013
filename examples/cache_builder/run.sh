#!/bin/bash
# Makes a cache of the toolboxes in tree, in the current directory.
#
#   run.sh CACHE_BUILDER
exec "$1" "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/tree" toolbox.cache
