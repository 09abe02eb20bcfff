#pragma once

#include "CoreTypes.h"

enum class EVersionComponent
{
	Major,
	Minor,
	Patch,
	Changelist,
	Branch
};
