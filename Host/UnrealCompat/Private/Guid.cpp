#include "Misc/Guid.h"

FString FGuid::ToString(EGuidFormats Format) const
{
	switch (Format)
	{
	case EGuidFormats::DigitsLower:
		return FString::Printf(TEXT("%08x%08x%08x%08x"), A, B, C, D);
	case EGuidFormats::DigitsWithHyphens:
		return FString::Printf(TEXT("%08X-%04X-%04X-%04X-%04X%08X"), A, B >> 16, B & 0xFFFF, C >> 16, C & 0xFFFF, D);
	case EGuidFormats::DigitsWithHyphensLower:
		return FString::Printf(TEXT("%08x-%04x-%04x-%04x-%04x%08x"), A, B >> 16, B & 0xFFFF, C >> 16, C & 0xFFFF, D);
	case EGuidFormats::DigitsWithHyphensInBraces:
		return FString::Printf(TEXT("{%08X-%04X-%04X-%04X-%04X%08X}"), A, B >> 16, B & 0xFFFF, C >> 16, C & 0xFFFF, D);
	case EGuidFormats::DigitsWithHyphensInParentheses:
		return FString::Printf(TEXT("(%08X-%04X-%04X-%04X-%04X%08X)"), A, B >> 16, B & 0xFFFF, C >> 16, C & 0xFFFF, D);
	default:
		return FString::Printf(TEXT("%08X%08X%08X%08X"), A, B, C, D);
	}
}
