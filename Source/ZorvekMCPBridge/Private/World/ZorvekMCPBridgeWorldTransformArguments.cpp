#include "World/ZorvekMCPBridgeWorldTransformArguments.h"

#include "Dom/JsonValue.h"
// FMath::IsFinite, FMath::Abs and FCString::Atod: not in the reference notes; check against the
// engine (Core's Math/UnrealMathUtility.h and Misc/CString.h).
#include "Math/UnrealMathUtility.h"

namespace
{
	using ZorvekMCPBridgeWorldTransformArguments::FNumberOverride;

	// Digits with an optional sign, at most one '.', and an optional exponent ("e-3"); at least one
	// digit before the exponent.
	bool WorldTransformIsNumberText(const FString& Text)
	{
		int32 Index = 0;
		const int32 Length = Text.Len();
		if (Index < Length && (Text[Index] == TEXT('-') || Text[Index] == TEXT('+')))
		{
			++Index;
		}
		bool bSeenDigit = false;
		bool bSeenDot = false;
		for (; Index < Length; ++Index)
		{
			const TCHAR Character = Text[Index];
			if (FChar::IsDigit(Character))
			{
				bSeenDigit = true;
			}
			else if (Character == TEXT('.') && !bSeenDot)
			{
				bSeenDot = true;
			}
			else
			{
				break;
			}
		}
		if (!bSeenDigit)
		{
			return false;
		}
		if (Index < Length && (Text[Index] == TEXT('e') || Text[Index] == TEXT('E')))
		{
			++Index;
			if (Index < Length && (Text[Index] == TEXT('-') || Text[Index] == TEXT('+')))
			{
				++Index;
			}
			bool bSeenExponentDigit = false;
			for (; Index < Length && FChar::IsDigit(Text[Index]); ++Index)
			{
				bSeenExponentDigit = true;
			}
			if (!bSeenExponentDigit)
			{
				return false;
			}
		}
		return Index == Length;
	}

	// The texts a client may write for a value that is a number but not a finite one.
	bool WorldTransformIsNonFiniteText(const FString& Text)
	{
		FString Body = Text;
		if (Body.StartsWith(TEXT("-")) || Body.StartsWith(TEXT("+")))
		{
			Body.RightChopInline(1);
		}
		return Body.Equals(TEXT("nan"), ESearchCase::IgnoreCase) || Body.Equals(TEXT("inf"), ESearchCase::IgnoreCase)
			|| Body.Equals(TEXT("infinity"), ESearchCase::IgnoreCase);
	}

	// Reads one key into Override; returns the refusal, empty when the key is absent or usable.
	FString WorldTransformReadNumber(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, FNumberOverride& Override)
	{
		const TSharedPtr<FJsonValue> Value = Arguments.IsValid() ? Arguments->TryGetField(Key) : nullptr;
		if (!Value.IsValid())
		{
			return FString();
		}
		double Number = 0.0;
		bool bIsNumber = false;
		if (Value->Type == EJson::Number)
		{
			bIsNumber = Value->TryGetNumber(Number);
		}
		else if (Value->Type == EJson::String)
		{
			const FString Text = Value->AsString().TrimStartAndEnd();
			if (WorldTransformIsNonFiniteText(Text))
			{
				return FString::Printf(TEXT("%s must be a finite number."), Key);
			}
			if (WorldTransformIsNumberText(Text))
			{
				Number = FCString::Atod(*Text);
				bIsNumber = true;
			}
		}
		if (!bIsNumber)
		{
			return FString::Printf(TEXT("%s must be a number."), Key);
		}
		if (!FMath::IsFinite(Number))
		{
			return FString::Printf(TEXT("%s must be a finite number."), Key);
		}
		if (FMath::Abs(Number) > ZorvekMCPBridgeWorldTransformArguments::MaxMagnitude)
		{
			return FString::Printf(TEXT("%s is out of range (at most 10000000 in magnitude)."), Key);
		}
		Override.bPresent = true;
		Override.Value = Number;
		return FString();
	}

	double WorldTransformOverride(const FNumberOverride& Override, double Current)
	{
		return Override.bPresent ? Override.Value : Current;
	}
}

FZorvekMCPBridgeTransform ZorvekMCPBridgeWorldTransformArguments::FTransformOverrides::ApplyTo(const FZorvekMCPBridgeTransform& Current) const
{
	FZorvekMCPBridgeTransform Result = Current;
	Result.Location.X = WorldTransformOverride(LocationX, Current.Location.X);
	Result.Location.Y = WorldTransformOverride(LocationY, Current.Location.Y);
	Result.Location.Z = WorldTransformOverride(LocationZ, Current.Location.Z);
	Result.Rotation.Pitch = WorldTransformOverride(RotationPitch, Current.Rotation.Pitch);
	Result.Rotation.Yaw = WorldTransformOverride(RotationYaw, Current.Rotation.Yaw);
	Result.Rotation.Roll = WorldTransformOverride(RotationRoll, Current.Rotation.Roll);
	Result.Scale.X = WorldTransformOverride(ScaleX, Current.Scale.X);
	Result.Scale.Y = WorldTransformOverride(ScaleY, Current.Scale.Y);
	Result.Scale.Z = WorldTransformOverride(ScaleZ, Current.Scale.Z);
	return Result;
}

ZorvekMCPBridgeWorldTransformArguments::FTransformOverrides ZorvekMCPBridgeWorldTransformArguments::Read(const TSharedPtr<FJsonObject>& Arguments)
{
	FTransformOverrides Overrides;
	struct FWorldTransformKey
	{
		const TCHAR* Name;
		FNumberOverride* Target;
	};
	const FWorldTransformKey Keys[] = {
		{TEXT("LocationX"), &Overrides.LocationX},
		{TEXT("LocationY"), &Overrides.LocationY},
		{TEXT("LocationZ"), &Overrides.LocationZ},
		{TEXT("RotationPitch"), &Overrides.RotationPitch},
		{TEXT("RotationYaw"), &Overrides.RotationYaw},
		{TEXT("RotationRoll"), &Overrides.RotationRoll},
		{TEXT("ScaleX"), &Overrides.ScaleX},
		{TEXT("ScaleY"), &Overrides.ScaleY},
		{TEXT("ScaleZ"), &Overrides.ScaleZ},
	};
	for (const FWorldTransformKey& Key : Keys)
	{
		const FString Refusal = WorldTransformReadNumber(Arguments, Key.Name, *Key.Target);
		if (!Refusal.IsEmpty() && Overrides.Error.IsEmpty())
		{
			Overrides.Error = Refusal;
		}
	}
	return Overrides;
}

FString ZorvekMCPBridgeWorldTransformArguments::ReadNumber(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, FNumberOverride& OutNumber)
{
	return WorldTransformReadNumber(Arguments, Key, OutNumber);
}
