#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/Object.h"
#include "UObject/Package.h"
#include "UObject/UObjectGlobals.h"

namespace
{
	// The port's class flag words are the engine's own bits.
	static_assert(ZorvekMCPBridgeClassFlags::Abstract == (uint32)CLASS_Abstract, "class flag drift");
	static_assert(ZorvekMCPBridgeClassFlags::Native == (uint32)CLASS_Native, "class flag drift");
	static_assert(ZorvekMCPBridgeClassFlags::Interface == (uint32)CLASS_Interface, "class flag drift");
	static_assert(ZorvekMCPBridgeClassFlags::CompiledFromBlueprint == (uint32)CLASS_CompiledFromBlueprint, "class flag drift");
	static_assert(ZorvekMCPBridgeClassFlags::Deprecated == (uint32)CLASS_Deprecated, "class flag drift");
	static_assert(ZorvekMCPBridgeClassFlags::NewerVersionExists == (uint32)CLASS_NewerVersionExists, "class flag drift");

	FZorvekMCPBridgeTypeInfo MakeTypeInfo(UStruct* Type)
	{
		FZorvekMCPBridgeTypeInfo Info;
		Info.Path = Type->GetPathName();
		Info.Name = Type->GetName();
		if (const UStruct* Super = Type->GetSuperStruct())
		{
			Info.SuperPath = Super->GetPathName();
		}
		if (UClass* Class = Cast<UClass>(Type))
		{
			Info.ClassFlags = (uint32)Class->GetClassFlags();
			if (const UClass* Native = GetParentNativeClass(Class))
			{
				Info.NativeClassPath = Native->GetPathName();
				Info.NativeClassName = Native->GetName();
			}
		}
		return Info;
	}

	UClass* FindClassByPath(const FString& ClassPath)
	{
		return ClassPath.StartsWith(TEXT("/")) ? FindObject<UClass>(nullptr, *ClassPath) : nullptr;
	}

	// A full path finds that object; a short name finds the first type of that name, native first.
	template <typename TypeClass>
	TypeClass* FindTypeObject(const FString& PathOrShortName)
	{
		if (PathOrShortName.Contains(TEXT("/")))
		{
			return FindObject<TypeClass>(nullptr, *PathOrShortName);
		}
		return FindFirstObject<TypeClass>(*PathOrShortName, EFindFirstObjectOptions::NativeFirst);
	}
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineObjects::LoadObject(const FString& ObjectPath)
{
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(::LoadObject<UObject>(nullptr, *ObjectPath));
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineObjects::FindObject(const FString& ObjectPath) const
{
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(::FindObject<UObject>(nullptr, *ObjectPath));
}

FZorvekMCPBridgeObjectIdentity FZorvekMCPBridgeEngineObjects::GetIdentity(FZorvekMCPBridgeObjectHandle Handle) const
{
	FZorvekMCPBridgeObjectIdentity Identity;
	if (const UObject* Object = FZorvekMCPBridgeEngineEditorPort::ToObject(Handle))
	{
		Identity.ObjectPath = Object->GetPathName();
		const UPackage* Package = Object->GetOutermost();
		Identity.PackagePath = Package ? Package->GetName() : FString();
		Identity.Name = Object->GetName();
		Identity.ClassPath = Object->GetClass()->GetPathName();
		Identity.ClassName = Object->GetClass()->GetName();
	}
	return Identity;
}

FZorvekMCPBridgeTypeInfo FZorvekMCPBridgeEngineObjects::GetClassInfo(FZorvekMCPBridgeObjectHandle Handle) const
{
	const UObject* Object = FZorvekMCPBridgeEngineEditorPort::ToObject(Handle);
	return Object ? MakeTypeInfo(Object->GetClass()) : FZorvekMCPBridgeTypeInfo();
}

bool FZorvekMCPBridgeEngineObjects::IsA(FZorvekMCPBridgeObjectHandle Handle, const FString& ClassPath) const
{
	const UObject* Object = FZorvekMCPBridgeEngineEditorPort::ToObject(Handle);
	const UClass* Class = FindClassByPath(ClassPath);
	return Object && Class && Object->IsA(Class);
}

bool FZorvekMCPBridgeEngineObjects::FindType(EZorvekMCPBridgeTypeKind Kind, const FString& PathOrShortName, FZorvekMCPBridgeTypeInfo& OutType) const
{
	UStruct* Struct = nullptr;
	switch (Kind)
	{
	case EZorvekMCPBridgeTypeKind::Class:
		Struct = FindTypeObject<UClass>(PathOrShortName);
		break;
	case EZorvekMCPBridgeTypeKind::Struct:
		Struct = FindTypeObject<UScriptStruct>(PathOrShortName);
		break;
	case EZorvekMCPBridgeTypeKind::Enum:
		if (const UEnum* Enum = FindTypeObject<UEnum>(PathOrShortName))
		{
			OutType = FZorvekMCPBridgeTypeInfo();
			OutType.Path = Enum->GetPathName();
			OutType.Name = Enum->GetName();
			return true;
		}
		return false;
	}
	if (!Struct)
	{
		return false;
	}
	OutType = MakeTypeInfo(Struct);
	return true;
}

bool FZorvekMCPBridgeEngineObjects::LoadClass(const FString& ClassPath, FZorvekMCPBridgeTypeInfo& OutClass)
{
	UClass* Class = ClassPath.StartsWith(TEXT("/")) ? ::LoadObject<UClass>(nullptr, *ClassPath) : nullptr;
	if (!Class)
	{
		return false;
	}
	OutClass = MakeTypeInfo(Class);
	return true;
}

bool FZorvekMCPBridgeEngineObjects::IsChildOf(const FString& ClassPath, const FString& BaseClassPath) const
{
	const UClass* Class = FindClassByPath(ClassPath);
	const UClass* Base = FindClassByPath(BaseClassPath);
	return Class && Base && Class->IsChildOf(Base);
}
