// Level script of the docks: it rains. updated.c plays the sample again and again.
void main()
{
	setglobalvar("rain", loadsample("data/sounds/rain.wav"));
	setglobalvar("baron_beaten", 0);
}
