// The fixture of the primitive actor tests: the sample project with its level, tool calls written
// as JSON text, the new Blueprint read back through the port, and placement in the level to compare
// the placed actor's bounds with what the tools promised.
#pragma once

#include "EditorWorldTestSupport.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"

namespace ZorvekPrimitiveActorTests
{
	using namespace ZorvekEditorWorldTests;

	inline TSharedPtr<FJsonObject> ParseArguments(const char* Utf8)
	{
		TSharedPtr<FJsonObject> Object;
		const TSharedRef<TJsonReader<TCHAR>> Reader = TJsonReaderFactory<TCHAR>::Create(UECompatFromUtf8(Utf8));
		EXPECT_TRUE(FJsonSerializer::Deserialize(Reader, Object)) << Utf8;
		return Object.IsValid() ? Object : MakeShared<FJsonObject>();
	}

	// "min x y z / max x y z" of a bounds object, rounded as Vec rounds.
	inline std::string Box(const TSharedPtr<FJsonObject>& Bounds)
	{
		return "min " + Vec(Bounds->GetObjectField(TEXT("min"))) + " / max " + Vec(Bounds->GetObjectField(TEXT("max")));
	}

	// The bounds moved by an offset, as an actor placed there reads them.
	inline std::string ShiftedBox(const TSharedPtr<FJsonObject>& Bounds, double X, double Y, double Z)
	{
		const auto Shift = [X, Y, Z](const TSharedPtr<FJsonObject>& Corner)
		{
			TSharedPtr<FJsonObject> Moved = MakeShared<FJsonObject>();
			Moved->SetNumberField(TEXT("x"), Corner->GetNumberField(TEXT("x")) + X);
			Moved->SetNumberField(TEXT("y"), Corner->GetNumberField(TEXT("y")) + Y);
			Moved->SetNumberField(TEXT("z"), Corner->GetNumberField(TEXT("z")) + Z);
			return Moved;
		};
		return "min " + Vec(Shift(Bounds->GetObjectField(TEXT("min")))) + " / max " + Vec(Shift(Bounds->GetObjectField(TEXT("max"))));
	}

	class FPrimitiveActorTest : public FEditorWorldToolsTest
	{
	protected:
		TSharedPtr<FJsonObject> CallJson(const TCHAR* Tool, const char* ArgumentsJson)
		{
			return Call(Tool, ParseArguments(ArgumentsJson));
		}

		// The message of a refusal that carries only text (nothing was created).
		static std::string TextError(const TSharedPtr<FJsonObject>& Result)
		{
			EXPECT_TRUE(FToolRunner::IsError(Result));
			EXPECT_FALSE(FToolRunner::Payload(Result).IsValid()) << "a validation refusal with a payload";
			return S(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")));
		}

		// Nothing loads at the object path and the registry lists no asset in the package.
		void ExpectNoAsset(const TCHAR* ObjectPath) const
		{
			EXPECT_FALSE(Port->GetObjects().LoadObject(ObjectPath).IsValid()) << S(ObjectPath);
			FString PackageName = ObjectPath;
			int32 Dot = INDEX_NONE;
			if (PackageName.FindChar(TEXT('.'), Dot))
			{
				PackageName.LeftInline(Dot);
			}
			EXPECT_EQ(Port->GetAssetRegistry().GetAssetsByPackageName(PackageName).Num(), 0) << S(PackageName);
		}

		FZorvekMCPBridgeBlueprintSnapshot ReadBlueprint(const TCHAR* ObjectPath) const
		{
			FZorvekMCPBridgeBlueprintSnapshot Snapshot;
			EXPECT_TRUE(Port->GetBlueprints().ReadBlueprint(Port->GetObjects().LoadObject(ObjectPath), Snapshot)) << S(ObjectPath);
			return Snapshot;
		}

		// "Name:Class<Parent" per construction-script node, depth first.
		std::vector<std::string> ComponentTree(const TCHAR* ObjectPath) const
		{
			std::vector<std::string> Tree;
			for (const FZorvekMCPBridgeComponentSnapshot& Component : ReadBlueprint(ObjectPath).Components)
			{
				Tree.push_back(S(Component.Name) + ":" + S(Component.ComponentClassName) + "<" + S(Component.ParentComponentName));
			}
			return Tree;
		}

		// A template property of a component of the Blueprint, as export text.
		std::string TemplateValue(const TCHAR* ObjectPath, const TCHAR* ComponentName, const TCHAR* Property) const
		{
			for (const FZorvekMCPBridgeComponentSnapshot& Component : ReadBlueprint(ObjectPath).Components)
			{
				if (Component.Name == ComponentName)
				{
					FString Text;
					Port->GetReflection().FindProperty(Component.Template, Property).ExportText(Text);
					return S(Text);
				}
			}
			ADD_FAILURE() << "no component " << S(ComponentName);
			return std::string();
		}

		// Places the Blueprint at the location and answers the placed actor's readback.
		TSharedPtr<FJsonObject> PlaceAt(const TCHAR* ObjectPath, double X, double Y, double Z)
		{
			TSharedPtr<FJsonObject> Args = MakeShared<FJsonObject>();
			Args->SetStringField(TEXT("BlueprintNameOrPath"), ObjectPath);
			Args->SetBoolField(TEXT("AllowCurrentLevel"), true);
			Args->SetNumberField(TEXT("LocationX"), X);
			Args->SetNumberField(TEXT("LocationY"), Y);
			Args->SetNumberField(TEXT("LocationZ"), Z);
			return Ok(Call(TEXT("editor_place_actor"), Args))->GetObjectField(TEXT("actor"));
		}

		// The placed actor's component of that name.
		static TSharedPtr<FJsonObject> PlacedComponent(const TSharedPtr<FJsonObject>& Actor, const TCHAR* Name)
		{
			for (const TSharedPtr<FJsonValue>& Component : Actor->GetArrayField(TEXT("components")))
			{
				if (Component->AsObject()->GetStringField(TEXT("name")) == Name)
				{
					return Component->AsObject();
				}
			}
			ADD_FAILURE() << "no placed component " << S(Name);
			return MakeShared<FJsonObject>();
		}

		static std::vector<std::string> PartNames(const TSharedPtr<FJsonObject>& Payload)
		{
			std::vector<std::string> Names;
			for (const TSharedPtr<FJsonValue>& Part : Payload->GetArrayField(TEXT("parts")))
			{
				Names.push_back(S(Part->AsObject()->GetStringField(TEXT("name"))));
			}
			return Names;
		}
	};
}
