# Sources that test programs compile in, because the libraries keep them to themselves: NAME_sources.
set(numbers ${CMAKE_CURRENT_LIST_DIR}/../support/numbers)
set(detail ${CMAKE_CURRENT_LIST_DIR}/../src/detail)

set(test_from_chars_sources ${numbers}/from_chars.cpp)
set(test_fast_paths_sources
  ${detail}/avx2_sort.cpp
  ${detail}/avx512_sort.cpp
  ${detail}/bucket_sort.cpp
  ${detail}/logarithms.cpp
  ${detail}/radix_sort.cpp
  ${detail}/sample_sort.cpp
  ${detail}/twister.cpp)
