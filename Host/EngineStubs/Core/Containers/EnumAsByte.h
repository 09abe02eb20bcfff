#pragma once

#include "CoreTypes.h"

// An enum stored in one byte (Core).
template <class InEnumType>
class TEnumAsByte
{
public:
	typedef InEnumType EnumType;

	TEnumAsByte() = default;
	TEnumAsByte(const TEnumAsByte&) = default;
	TEnumAsByte& operator=(const TEnumAsByte&) = default;
	TEnumAsByte(EnumType InValue);
	explicit TEnumAsByte(int32 InValue);
	explicit TEnumAsByte(uint8 InValue);

	bool operator==(EnumType InValue) const;
	bool operator==(TEnumAsByte InValue) const;
	operator EnumType() const;
	EnumType GetValue() const;
	uint8 GetIntValue() const;

private:
	uint8 Value;
};
