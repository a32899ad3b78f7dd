#!/bin/bash
# The platform's tools under the names that scripts of login agents call them by. Whoever starts such a script has bash
# read this first (BASH_ENV), and says where the tools are.
function /usr/bin/defaults { "$VANTRY_TOOLS/vantry-defaults" "$@"; }
function /usr/bin/killall { "$VANTRY_TOOLS/vantry-killall" "$@"; }
