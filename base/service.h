#pragma once

namespace mact {

/// Base of the interfaces through which the program reaches its platform. Never copied.
class Service {
public:
    Service() = default;
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;
    virtual ~Service() = default;
};
} // namespace mact
