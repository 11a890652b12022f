# Published data sets that are not part of the project: where their folder is not there, the tests on them are skipped. Sourced, not run.

if [ -z "${WQ_REFERENCE_DATA:-}" ] && [ -d ../shared/data ]; then
    WQ_REFERENCE_DATA=$(cd ../shared/data && pwd)
    export WQ_REFERENCE_DATA
fi
