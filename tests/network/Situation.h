#pragma once

#include "Defect.h"
#include "Laptop.h"
#include "Network.h"
#include "Servers.h"

#include <optional>
#include <vector>

namespace kelvo {

/// What a situation takes place in.
struct World
{
    Network network;
    Servers servers{network};
    Laptop laptop{network};
};

enum class Unit { seconds, milliseconds, megabytes, count };

/// What the figure must be.
struct Limit
{
    double value;
    Unit unit;
    bool exactly = false; ///< otherwise at most
};

/// One row of the table: what happens on the network, what Kelvo does then, and the limit of the figure that measures it.
struct Situation
{
    const char *name;
    const char *what;
    const char *happens;
    Limit limit;
    /// Gives the figure, or nothing where the limit passed and nothing came. Throws a Defect.
    std::optional<double> (*run)(World &world, const Limit &limit);
};

const std::vector<Situation> &situations();

} // namespace kelvo
