"""The library's computations once more, in plain Python and independent of the C++ sources: what the tests compare with."""
