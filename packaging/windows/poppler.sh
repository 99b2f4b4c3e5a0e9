#!/usr/bin/env bash
# Started by poppler.c: poppler.sh TOLD NAME ARGUMENT...   runs the tool of that name; its output goes to the file TOLD,
# and TOLD.done is there once it has ended. The paths are Wine's.
words=()
for word; do
    [[ $word != [A-Z]:* ]] || word=$WINEPREFIX/dosdevices/${word,}
    words+=("${word//\\//}")
done
name=${words[1]##*/}
"${name%.exe}" "${words[@]:2}" >"${words[0]}"
echo $? >"${words[0]}.code"
mv "${words[0]}.code" "${words[0]}.done"
