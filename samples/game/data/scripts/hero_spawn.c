// A hero arrives: at the start, and again after a defeat.
void main()
{
	void self = getlocalvar("self");
	clearentityvar(self, "twice");
	playsound("data/sounds/select.wav");
	setglobalvar("combo", 0);
}
