#pragma once

template <typename To, typename From>
To* Cast(From* Src);
template <typename To, typename From>
const To* Cast(const From* Src);
template <typename To, typename From>
To* CastChecked(From* Src);
