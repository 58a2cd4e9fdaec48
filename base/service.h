#pragma once

namespace mact {

/// What the program is handed as an interface: one implementation, never copied.
class Service {
public:
    Service() = default;
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;
    virtual ~Service() = default;
};
} // namespace mact
