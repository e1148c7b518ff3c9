// The Baron is beaten: quiet, and buttons for everybody.
void main()
{
	void self = getlocalvar("self");
	int i;
	fademusic(1, 0);
	changeopenborvariant("nojoin", 0);
	for(i = 0; i < 6; i++){
		clearspawnentry();
		setspawnentry("name", "Button");
		setspawnentry("coords", getentityproperty(self, "x") - 50 + i * 20, getentityproperty(self, "z") + (i % 3) * 4, 0);
		spawn();
	}
	// The stage would be over at once; an unseen guest keeps it open a while.
	clearspawnentry();
	setspawnentry("name", "Curtain");
	setspawnentry("coords", 0 - 400, getentityproperty(self, "z"), 0);
	spawn();
	setglobalvar("baron_beaten", 1);
}
