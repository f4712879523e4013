#!/bin/bash
# The statements of input.txt, with the directories of tree on the path.
#
#   run.sh INTERPRETER
cd "$(dirname "${BASH_SOURCE[0]}")" && exec "$1" "$PWD/tree/lib" "$PWD/tree/tools" < input.txt
