
curComp = app.project.activeItem;
cropComp = curComp.selectedLayers[0];
cropCompSource = cropComp.source; 

originalHeight = cropComp.height;
originalWidth = cropComp.width;

var ok = false;

var numMasks = cropComp.mask.numProperties; 

var selectedLayerMasks = [0];
for (var i = 0; i < numMasks; i++) {
    selectedLayerMasks[i] = cropComp.mask(i+1).name;
}

var mc = new Object();
mc.d = new Window("dialog", "Choose Mask");
mc.d.margins = [10,10,10,10];
mc.d.orientation = "column";
mc.d.alignChildren = ["fill", "top"];


mc.d.list = mc.d.add("listbox", undefined, selectedLayerMasks);
mc.d.list.minimumSize = [300,50];
mc.d.list.maximumSize = [400,150];
mc.d.btnG = mc.d.add("group");
mc.d.btnG.orientation = "row";
mc.d.btnG.alignment = "center";
mc.d.btnG.ok = mc.d.btnG.add("button", undefined, "OK");
mc.d.btnG.cancel = mc.d.btnG.add("button", undefined, "Cancel");



mc.d.list.items[0].selected = true;

mc.d.btnG.ok.onClick = okButton;
mc.d.btnG.cancel.onClick = cancelButton;

function okButton() {
    ok = true;
    mc.d.close();
}

 function cancelButton() {
    mc.d.close(); 
    return 0;
}

mc.d.show();
var selection = 0;
if (ok) {
    selection = mc.d.list.selection ? mc.d.list.selection.index : -1
} else {
    selection = -1
}


selection


