#!/usr/bin/env bash
# tools/picture takes no picture of a language that there isn't: picture_test.sh REPOSITORY
set -eu
for language in klingon german.x 'English' '.*'; do
  status=0
  said=$("$1/tools/picture" english "$language" 2>&1 </dev/null) || status=$?
  if [ $status -ne 2 ] || [[ $said != *"no language called \"$language\""*" german "* ]]; then
    echo "$language: ended with $status and said: $said"
    exit 1
  fi
done
