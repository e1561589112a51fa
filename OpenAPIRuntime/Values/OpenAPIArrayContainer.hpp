#pragma once

// The free-form values contain one another, so they are declared together.
#include "OpenAPIRuntime/Values/OpenAPIValueContainer.hpp"
