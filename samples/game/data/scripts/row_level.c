// Level script of Kettle Row: runs once, when the stage is set up.
void main()
{
	setglobalvar("buttons", 0);
	setglobalvar("combo", 0);
	setglobalvar("rain", -1);
	log("Kettle Row, " + getlevelproperty("width") + " paces long.");
}
