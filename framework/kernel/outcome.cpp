#include "framework/kernel/outcome.h"

#include <utility>

namespace KVR
{

outcome::outcome() = default;
outcome::outcome(int errorNumber, std::string message) : m_errorNumber(errorNumber), m_message(std::move(message)) {}
outcome::outcome(outcome const& other) = default;
outcome::outcome(outcome&& other) noexcept = default;
outcome& outcome::operator=(outcome const& other) = default;
outcome& outcome::operator=(outcome&& other) noexcept = default;
outcome::~outcome() = default;

}  // namespace KVR
