#pragma once

#include "Defect.h"
#include "Laptop.h"
#include "Network.h"
#include "Servers.h"

#include <optional>
#include <vector>

namespace kelvo {

/// The environment of a situation.
struct World
{
    Network network;
    Servers servers{network};
    Laptop laptop{network};
};

enum class Unit { seconds, milliseconds, megabytes, count };

/// The limit of the measured value.
struct Limit
{
    double value;
    Unit unit;
    bool exactly = false; ///< whether the value must be equal to the limit and not only at most the limit
};

/// A row of the table: what happens on the network, what Kelvo does then, and the limit of the measured value.
struct Situation
{
    const char *name;
    const char *what;
    const char *happens;
    Limit limit;
    /// Returns the measured value; nullopt when the expected event did not happen within the limit. May throw a Defect.
    std::optional<double> (*run)(World &world, const Limit &limit);
};

const std::vector<Situation> &situations();

} // namespace kelvo
