#pragma once

// A set of lambdas as one visitor for std::visit, one per case of a variant.
template <typename... Handlers> struct Overloaded : Handlers... { using Handlers::operator()...; };
// clang 14 doesn't deduce the arguments of an aggregate template by itself.
template <typename... Handlers> Overloaded(Handlers...) -> Overloaded<Handlers...>;
