

var indexA = [%s];
var namesA = [];
var ai = app.project.activeItem;

for (var i = 0; i < indexA.length; i++) {

	namesA.push(ai.layer(indexA[i] + 1).name);

}

alert("Some layers were not cropped:\r\n\r\n" + namesA.join(", ") + "\r\n\r\nThis is most likely because these layers have no content at the current time", "Some Layers Not Cropped");

