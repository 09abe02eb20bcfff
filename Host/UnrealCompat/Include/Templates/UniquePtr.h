#pragma once

#include "CoreTypes.h"
#include <memory>

template <typename T, typename Deleter = std::default_delete<T>>
using TUniquePtr = std::unique_ptr<T, Deleter>;

template <typename T, typename... ArgTypes>
TUniquePtr<T> MakeUnique(ArgTypes&&... Args)
{
	return std::make_unique<T>(Forward<ArgTypes>(Args)...);
}
