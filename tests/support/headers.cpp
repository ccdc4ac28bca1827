// A library needs a source. What is compiled ahead stands with the library.
