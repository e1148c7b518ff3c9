// Level script of the docks: the rain on the water, as a sound that goes on.
void main()
{
	void rain = loadsample("data/sounds/rain.wav");
	if(rain >= 0){
		playsample(rain, 0, 60, 60, 100, 1);
	}
	setglobalvar("baron_beaten", 0);
}
