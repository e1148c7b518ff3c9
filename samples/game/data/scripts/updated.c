// Runs at the end of every tick: draws what the status bar does not show, and
// lets it rain.
void main()
{
	void icon = getglobalvar("button_icon");
	int buttons = getglobalvar("buttons") + 0;
	int count = getglobalvar("combo") + 0;
	int now = openborvariant("elapsed_time");
	int age = now - getglobalvar("combo_time");
	int rain = getglobalvar("rain");

	if(openborvariant("in_level") == 0){
		return;
	}
	if(isempty(icon)){
		icon = loadsprite("data/chars/items/button_1.png");
		setglobalvar("button_icon", icon);
	}
	if(rain >= 0 && now % 160 == 1){
		playsample(rain, 0, 60, 60, 100, 0);
	}
	drawsprite(icon, 366, 5, 9000, 0);
	drawstring(388, 10, 1, "x " + buttons, 9000);

	if(count > 1 && age < 70){
		drawstring(380, 38, 5, count + " HITS", 9000);
		drawbox(380, 52, 64 * (70 - age) / 70, 2, 9000, rgbcolor(255, 216, 106), 0);
	}
}
