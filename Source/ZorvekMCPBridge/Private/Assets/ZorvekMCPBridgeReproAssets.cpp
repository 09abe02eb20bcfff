#include "Assets/ZorvekMCPBridgeReproAssets.h"

#include "Assets/ZorvekMCPBridgePropertyExport.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

namespace
{
	const TCHAR* const CameraAssetClass = TEXT("/Script/GameplayCameras.CameraAsset");
	const TCHAR* const CameraRigAssetClass = TEXT("/Script/GameplayCameras.CameraRigAsset");
	const TCHAR* const StateTreeClass = TEXT("/Script/StateTreeModule.StateTree");
	const TCHAR* const ArrayCameraNodeClass = TEXT("/Script/GameplayCameras.ArrayCameraNode");
	const TCHAR* const RigInterfaceParameterClass = TEXT("/Script/GameplayCameras.CameraRigInterfaceParameter");
	const TCHAR* const BlendableParameterClass = TEXT("/Script/GameplayCameras.CameraObjectInterfaceBlendableParameter");
	const TCHAR* const SingleCameraDirectorClass = TEXT("/Script/GameplayCameras.SingleCameraDirector");
	const TCHAR* const StateTreeEditorDataClass = TEXT("/Script/StateTreeEditorModule.StateTreeEditorData");
	const TCHAR* const StateTreeStateClass = TEXT("/Script/StateTreeEditorModule.StateTreeState");

	// One run: the port, the failures so far, and the few reflective writes the recipe needs.
	class FReproBuilder
	{
	public:
		explicit FReproBuilder(IZorvekMCPBridgeEditorPort& InPort)
			: Port(InPort)
		{
		}

		void Fail(const TCHAR* Stage, const FString& Reason)
		{
			PartialFailures.Add(ZorvekMCPBridgeAssets::MakePartialFailure(Stage, Reason));
		}

		bool HasClass(const TCHAR* ClassPath)
		{
			FZorvekMCPBridgeTypeInfo Unused;
			return Port.GetObjects().LoadClass(ClassPath, Unused);
		}

		bool CheckClass(const TCHAR* ClassPath, const TCHAR* Stage)
		{
			if (HasClass(ClassPath))
			{
				return true;
			}
			Fail(Stage, FString::Printf(TEXT("Could not load %s."), ClassPath));
			return false;
		}

		// A new asset in a package of its own; an existing object of that name is not replaced.
		FZorvekMCPBridgeObjectHandle CreateAsset(const FString& PackagePath, const FString& AssetName, const TCHAR* ClassPath)
		{
			const FString PackageName = PackagePath + TEXT("/") + AssetName;
			FString Reason;
			if (!Port.GetAssetAuthoring().IsValidLongPackageName(PackageName, Reason) || Port.GetObjects().LoadObject(PackageName + TEXT(".") + AssetName).IsValid())
			{
				return FZorvekMCPBridgeObjectHandle();
			}
			const FZorvekMCPBridgeObjectHandle Package = Port.GetAssetAuthoring().CreateOrFindPackage(PackageName);
			return Package.IsValid() ? Port.GetAssetAuthoring().CreateAssetObject(Package, ClassPath, AssetName) : FZorvekMCPBridgeObjectHandle();
		}

		FZorvekMCPBridgeObjectHandle CreateSubobject(FZorvekMCPBridgeObjectHandle Outer, const TCHAR* ClassPath, const TCHAR* Name)
		{
			return Outer.IsValid() ? Port.GetAssetAuthoring().CreateSubobject(Outer, ClassPath, Name) : FZorvekMCPBridgeObjectHandle();
		}

		FZorvekMCPBridgePropertyCursor FindProperty(FZorvekMCPBridgeObjectHandle Object, const TCHAR* PropertyName) const
		{
			return Object.IsValid() ? Port.GetReflection().FindProperty(Object, PropertyName) : FZorvekMCPBridgePropertyCursor();
		}

		bool SetText(FZorvekMCPBridgeObjectHandle Object, const TCHAR* PropertyName, const TCHAR* Text)
		{
			const FZorvekMCPBridgePropertyCursor Value = FindProperty(Object, PropertyName);
			return Value.IsValid() && Port.GetReflection().ImportText(Value, Text);
		}

		// Writes the reference as its object path; the engine's import turns a path it cannot
		// resolve into null and still succeeds, so the result is read back.
		bool SetReference(const FZorvekMCPBridgePropertyCursor& Value, FZorvekMCPBridgeObjectHandle Target)
		{
			if (!Value.IsValid() || !Target.IsValid() || Value.GetKind() != EZorvekMCPBridgePropertyKind::ObjectReference)
			{
				return false;
			}
			Port.GetReflection().ImportText(Value, Port.GetObjects().GetIdentity(Target).ObjectPath);
			return Value.GetReferencedObject() == Target;
		}

		// Appends a reference to an array of object references by importing the array's text
		// with one more element, and checks the new last element.
		bool AppendReference(const FZorvekMCPBridgePropertyCursor& Array, FZorvekMCPBridgeObjectHandle Target)
		{
			if (!Array.IsValid() || !Target.IsValid() || Array.GetKind() != EZorvekMCPBridgePropertyKind::Array)
			{
				return false;
			}
			FString Existing;
			Array.ExportText(Existing);
			const int32 CountBefore = Array.GetArrayNum();
			const FString Element = TEXT("\"") + Port.GetObjects().GetIdentity(Target).ObjectPath + TEXT("\"");
			const FString Text = CountBefore == 0 ? TEXT("(") + Element + TEXT(")") : Existing.LeftChop(1) + TEXT(",") + Element + TEXT(")");
			Port.GetReflection().ImportText(Array, Text);
			if (Array.GetArrayNum() == CountBefore + 1 && Array.GetArrayElement(CountBefore).GetReferencedObject() == Target)
			{
				return true;
			}
			// What a failed append wrote is put back.
			Port.GetReflection().ImportText(Array, Existing);
			return false;
		}

		void Finish(FZorvekMCPBridgeObjectHandle Asset)
		{
			if (Asset.IsValid())
			{
				Port.GetAssetAuthoring().MarkPackageDirty(Asset);
				Port.GetAssetAuthoring().NotifyAssetCreated(Asset);
			}
		}

		FString ObjectPathOf(FZorvekMCPBridgeObjectHandle Object) const
		{
			return Object.IsValid() ? Port.GetObjects().GetIdentity(Object).ObjectPath : FString();
		}

		IZorvekMCPBridgeEditorPort& Port;
		TArray<TSharedPtr<FJsonValue>> PartialFailures;
	};

	void SetUpCameraRig(FReproBuilder& Builder, FZorvekMCPBridgeObjectHandle Rig)
	{
		const TCHAR* const Stage = TEXT("camera_rig_setup");
		if (Builder.CheckClass(ArrayCameraNodeClass, TEXT("class_load")))
		{
			const FZorvekMCPBridgeObjectHandle RootNode = Builder.CreateSubobject(Rig, ArrayCameraNodeClass, TEXT("RootArrayNode"));
			if (!Builder.SetReference(Builder.FindProperty(Rig, TEXT("RootNode")), RootNode))
			{
				Builder.Fail(Stage, TEXT("Could not set CameraRig RootNode."));
			}
		}

		// The recipe's parameter class is gone in 5.7; its successor carries the same two names.
		const bool bRecipeClass = Builder.CheckClass(RigInterfaceParameterClass, TEXT("class_load"));
		const TCHAR* const ParameterClass = bRecipeClass ? RigInterfaceParameterClass : BlendableParameterClass;
		if (!bRecipeClass && !Builder.HasClass(BlendableParameterClass))
		{
			return;
		}
		const FZorvekMCPBridgeObjectHandle Parameter = Builder.CreateSubobject(Rig, ParameterClass, TEXT("DummyDistanceParameter"));
		const bool bNamed = Builder.SetText(Parameter, TEXT("InterfaceParameterName"), TEXT("DummyDistance"))
			&& Builder.SetText(Parameter, TEXT("TargetPropertyName"), TEXT("bIsEnabled"));
		const FZorvekMCPBridgePropertyCursor Interface = Builder.FindProperty(Rig, TEXT("Interface"));
		bool bAdded = false;
		if (bRecipeClass)
		{
			// Should a load follow the class redirect, the recipe's array is still missing in 5.7.
			bAdded = bNamed && Interface.IsValid() && Builder.AppendReference(Interface.FindStructField(TEXT("InterfaceParameters")), Parameter);
			if (!bAdded)
			{
				Builder.Fail(Stage, TEXT("Could not add CameraRig interface parameter."));
			}
		}
		if (!bAdded)
		{
			const bool bSuccessorAdded = bNamed && Interface.IsValid() && Builder.AppendReference(Interface.FindStructField(TEXT("BlendableParameters")), Parameter);
			if (!bSuccessorAdded && !bRecipeClass)
			{
				Builder.Fail(Stage, TEXT("Could not add CameraRig interface parameter."));
			}
		}
	}

	void SetUpCameraAsset(FReproBuilder& Builder, FZorvekMCPBridgeObjectHandle Camera, FZorvekMCPBridgeObjectHandle Rig)
	{
		const TCHAR* const Stage = TEXT("camera_asset_setup");
		if (Builder.CheckClass(SingleCameraDirectorClass, TEXT("class_load")))
		{
			const FZorvekMCPBridgeObjectHandle Director = Builder.CreateSubobject(Camera, SingleCameraDirectorClass, TEXT("SingleCameraDirector"));
			if (!Builder.SetReference(Builder.FindProperty(Camera, TEXT("CameraDirector")), Director))
			{
				Builder.Fail(Stage, TEXT("Could not set CameraAsset CameraDirector."));
			}
			// The 5.7 place of the rig: CameraRigs below is deprecated and never saved.
			else if (Rig.IsValid())
			{
				Builder.SetReference(Builder.FindProperty(Director, TEXT("CameraRig")), Rig);
			}
		}
		if (!Builder.AppendReference(Builder.FindProperty(Camera, TEXT("CameraRigs")), Rig))
		{
			Builder.Fail(Stage, TEXT("Could not add CameraRig to CameraAsset CameraRigs."));
		}
	}

	void SetUpStateTree(FReproBuilder& Builder, FZorvekMCPBridgeObjectHandle StateTree)
	{
		const TCHAR* const Stage = TEXT("state_tree_setup");
		if (!Builder.HasClass(StateTreeEditorDataClass) || !Builder.HasClass(StateTreeStateClass))
		{
			Builder.Fail(TEXT("class_load"), TEXT("Could not load StateTree editor data/state classes."));
			return;
		}
		const FZorvekMCPBridgeObjectHandle EditorData = Builder.CreateSubobject(StateTree, StateTreeEditorDataClass, TEXT("EditorData"));
		if (!Builder.SetReference(Builder.FindProperty(StateTree, TEXT("EditorData")), EditorData))
		{
			Builder.Fail(Stage, TEXT("Could not set StateTree EditorData."));
		}
		// States live in the editor data, a child in its parent state.
		const FZorvekMCPBridgeObjectHandle Root = Builder.CreateSubobject(EditorData, StateTreeStateClass, TEXT("RootState"));
		const FZorvekMCPBridgeObjectHandle Child = Builder.CreateSubobject(Root, StateTreeStateClass, TEXT("InspectCameraState"));
		Builder.SetText(Root, TEXT("Name"), TEXT("Root"));
		Builder.SetText(Child, TEXT("Name"), TEXT("InspectCamera"));
		Builder.SetReference(Builder.FindProperty(Child, TEXT("Parent")), Root);
		if (!Builder.AppendReference(Builder.FindProperty(EditorData, TEXT("SubTrees")), Root))
		{
			Builder.Fail(Stage, TEXT("Could not add root state to EditorData SubTrees."));
		}
		if (!Builder.AppendReference(Builder.FindProperty(Root, TEXT("Children")), Child))
		{
			Builder.Fail(Stage, TEXT("Could not add child state to root state."));
		}
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeReproAssets::CreateMossbankReproAssets(IZorvekMCPBridgeEditorPort& Port, const FParams& Params)
{
	const FString PackagePath = Params.PackagePath.IsEmpty()
		? FString::Printf(TEXT("/Game/ZorvekRepro/MossbankHG_%s"), *Params.Now.ToString(TEXT("%Y%m%d_%H%M%S")))
		: Params.PackagePath;
	FReproBuilder Builder(Port);

	const bool bCameraClass = Builder.CheckClass(CameraAssetClass, TEXT("class_load"));
	const bool bRigClass = Builder.CheckClass(CameraRigAssetClass, TEXT("class_load"));
	const bool bStateTreeClass = Builder.CheckClass(StateTreeClass, TEXT("class_load"));

	const FString CameraName = FString::Printf(TEXT("CA_%s_Camera"), *Params.AssetPrefix);
	const FString RigName = FString::Printf(TEXT("CR_%s_Camera"), *Params.AssetPrefix);
	const FString StateTreeName = FString::Printf(TEXT("ST_%s_Director"), *Params.AssetPrefix);
	const FZorvekMCPBridgeObjectHandle Camera = bCameraClass ? Builder.CreateAsset(PackagePath, CameraName, CameraAssetClass) : FZorvekMCPBridgeObjectHandle();
	if (bCameraClass && !Camera.IsValid())
	{
		Builder.Fail(TEXT("asset_create"), TEXT("Could not create dummy CameraAsset."));
	}
	const FZorvekMCPBridgeObjectHandle Rig = bRigClass ? Builder.CreateAsset(PackagePath, RigName, CameraRigAssetClass) : FZorvekMCPBridgeObjectHandle();
	if (bRigClass && !Rig.IsValid())
	{
		Builder.Fail(TEXT("asset_create"), TEXT("Could not create dummy CameraRigAsset."));
	}
	const FZorvekMCPBridgeObjectHandle StateTree = bStateTreeClass ? Builder.CreateAsset(PackagePath, StateTreeName, StateTreeClass) : FZorvekMCPBridgeObjectHandle();
	if (bStateTreeClass && !StateTree.IsValid())
	{
		Builder.Fail(TEXT("asset_create"), TEXT("Could not create dummy StateTree."));
	}

	if (Rig.IsValid())
	{
		SetUpCameraRig(Builder, Rig);
	}
	if (Camera.IsValid())
	{
		SetUpCameraAsset(Builder, Camera, Rig);
	}
	if (StateTree.IsValid())
	{
		SetUpStateTree(Builder, StateTree);
	}
	Builder.Finish(Camera);
	Builder.Finish(Rig);
	Builder.Finish(StateTree);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("package_path"), PackagePath);
	Result->SetStringField(TEXT("camera_asset_path"), PackagePath + TEXT("/") + CameraName);
	Result->SetStringField(TEXT("camera_rig_asset_path"), PackagePath + TEXT("/") + RigName);
	Result->SetStringField(TEXT("state_tree_asset_path"), PackagePath + TEXT("/") + StateTreeName);
	Result->SetStringField(TEXT("camera_asset_object_path"), Builder.ObjectPathOf(Camera));
	Result->SetStringField(TEXT("camera_rig_object_path"), Builder.ObjectPathOf(Rig));
	Result->SetStringField(TEXT("state_tree_object_path"), Builder.ObjectPathOf(StateTree));
	Result->SetArrayField(TEXT("partial_failures"), Builder.PartialFailures);
	Result->SetBoolField(TEXT("created"), Camera.IsValid() && Rig.IsValid() && StateTree.IsValid());
	return Result;
}
