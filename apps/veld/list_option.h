// Options that take any number of words.
#pragma once

#include <CLI/CLI.hpp>

namespace veld {

// Makes an unnamed list take each word as it stands. A list that may have extra words would take one in brackets for a
// list of its own; one that has never enough of them takes as many, and leaves their number unjudged.
inline CLI::Option* takeAsGiven(CLI::Option* list) {
  constexpr int any = CLI::detail::expected_max_vector_size;
  return list->allow_extra_args(false)->expected(any, any)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

}  // namespace veld
