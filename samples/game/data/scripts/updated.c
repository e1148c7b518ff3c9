// Runs at the end of every tick: draws what the status bar does not show, and
// lets it rain.

// The count, over a gauge of the time that is left for the next blow.
void show_combo(int count, int age)
{
	void gauge = getglobalvar("combo_gauge");
	if(isempty(gauge)){
		gauge = allocscreen(68, 22);
		setglobalvar("combo_gauge", gauge);
	}
	clearscreen(gauge);
	drawboxtoscreen(gauge, 0, 17, 68, 5, rgbcolor(24, 18, 32));
	drawboxtoscreen(gauge, 2, 19, 64 * (70 - age) / 70, 1, rgbcolor(255, 216, 106));
	drawstringtoscreen(gauge, 2, 0, 5, count + " HITS");
	drawscreen(gauge, 380, 36, 9000, 0);
}

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
		show_combo(count, age);
	}
}
