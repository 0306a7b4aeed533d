
var PRECOMP = 1;
var NO = 2;

var winProps = {
        alignChildren: ['left','top'],
        multiline: true
}

var win = new Window('dialog{preferredSize: [400,""], alignChildren: ["fill", "top"], orientation: "column", text: "3D Layers", properties: {closeButton: false}}')

win.onClose = function () {

    return NO

}


var text = win.add("statictext", undefined, 
"The composition you are about to crop contains 3D layers which may cause unexpected results.\n\n Would you like to pre-compose the contents to avoid possible layer shifting?"
        , winProps);


var bottomGrp = win.add('group{orientation: "row", alignment: "right",alignChildren: ["fill", "fill"], preferredSize: [400,""]}')
var btnGrp = bottomGrp.add("group");
btnGrp.alignment = "left"
var remGrp = bottomGrp.add('group{orientation: "row", alignChildren: ["right", ""], preferredSize: [10,""]}');
remGrp.alignment = "right"

var a = btnGrp.add("button", undefined, "Yes");
var f = btnGrp.add("button", undefined, "No");

var space = remGrp.add("statictext", undefined, "     ");
space.preferredSize.width = 70;
var r = remGrp.add('checkbox{text: "Remember My Choice"}')
r.alignment = "right"

function savePref(value) {
    app.preferences.savePrefAsLong("Kestrin","ThreeD", value);
    app.preferences.saveToDisk();
}

a.onClick = function() {
    if (r.value) {
        savePref(1)
    }
    win.close(PRECOMP);
}

f.onClick = function() {
    if (r.value) {
        savePref(2)
    }
    win.close(NO);
}

var output = win.show();

if (output == NO) {
    false;
} else {
    true;
}
